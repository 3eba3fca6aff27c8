#include "bench/lists.h"

#include <memory>
#include <stdexcept>

#include "bench/direct_lists.h"
#include "host/demo/demonstration.h"
#include "host/store.h"
#include "invoicing/period_screen.h"
#include "reports/sales_journal_screen.h"
#include "tests/test_shop.h"

namespace tpv::bench {

namespace {

// A shop on which one screen after the other is opened and worked.
class Office : private ui::Driver {
 public:
  Office(const std::string& path, const Clock& clock)
      : connection_(path, clock), shop_(connection_, clock) {
    shop_.front_end.SetDriver(*this);
  }

  SqliteConnection& connection() { return connection_; }

  void Journal(const std::string& from, const std::string& to) {
    FrmTpvDiarioVentas screen(context_);
    Search(screen, screen.Text1, from, to);
    RequireRows(screen);
    engine().Unload(screen);
  }

  void Invoicing(const std::string& from, const std::string& to, bool make_invoice) {
    FrmTpvFacturas screen(context_);
    Search(screen, screen.Text1, from, to);
    RequireRows(screen);
    if (make_invoice) engine().Click(*screen.Find("cmdFacturar"));
    engine().Unload(screen);
    shop_.reports.reports.clear();  // a month's invoice is thousands of pages
  }

 private:
  ui::Engine& engine() { return shop_.front_end.engine(); }

  void Search(ui::Form& screen, ui::TextBoxes& boxes, const std::string& from,
              const std::string& to) {
    engine().Open(screen);
    boxes[5].text = from;
    boxes[2].text = to;
    engine().Click(*screen.Find("cmdInforme"));
  }

  void RequireRows(ui::Form& screen) {
    const auto* grid = dynamic_cast<ui::Grid*>(screen.Find("DbgDiario"));
    if (grid->rows.empty()) throw std::runtime_error(screen.name + " lists nothing");
  }

  // The invoice's parameters are confirmed as they come.
  bool Step() override {
    engine().Click(*engine().Top()->Find("cmdFacturar"));
    return true;
  }
  void OnBox(const ui::MessageBox& box) override { throw std::runtime_error(box.text); }

  SqliteConnection connection_;
  TestShop shop_;
  Context context_{0, 1, 1, 0, shop_.database, shop_.ports};
};

// Five lines a ticket instead of the usual three and a half.
void AddLines(Connection& connection) {
  Transaction transaction(connection);
  for (int line = 0; line < 3; ++line) {
    connection.Execute(
        "INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
        "Lav_Importe, Lav_Tiva) SELECT Cav_Id, 1, '0001', 'Leche entera 1 l', 1, 0.92, 0, 0.92, 3 "
        "FROM Cav WHERE Cav_Id % 2 = 0");
  }
  transaction.Commit();
}

DateTime FirstDay(const StepClock& clock, int days_ago) {
  const DateTime now = clock.Now();
  return AddDays({now.year, now.month, now.day}, -days_ago);
}

constexpr const char* kDayEnd = " 23:59:59.000";

}  // namespace

std::vector<Row> MeasureMonth(const std::string& folder, int runs) {
  constexpr int kDays = 30;
  const StepClock clock;
  const std::string path = folder + "/mes.db";
  MakeLargeStore(path, {30000, kDays, 1000, 1}, clock);
  Office office(path, clock);
  AddLines(office.connection());
  const DateTime first = FirstDay(clock, kDays);
  const DateTime last = FirstDay(clock, 1);
  const std::string from = ToDayFirst(first);
  const std::string to = ToDayFirst(last);
  DirectStore store(path, clock);
  DirectLists direct(store, ToIso(first), ToIso(last).substr(0, 10) + kDayEnd);
  std::vector<Row> rows;
  rows.push_back(Compare("sales journal of a month, 30,000 tickets", runs,
                         {{}, [&] { office.Journal(from, to); }}, {{}, [&] { direct.Journal(); }}));
  rows.push_back(Compare("period invoicing, search of a month", runs,
                         {{}, [&] { office.Invoicing(from, to, false); }},
                         {{}, [&] { direct.SearchPeriod(); }}));
  const auto forget = [&] { direct.Forget(); };
  rows.push_back(Compare("period invoicing, search and invoice of a month", runs,
                         {forget, [&] { office.Invoicing(from, to, true); }},
                         {forget, [&] {
                            direct.SearchPeriod();
                            direct.InvoicePeriod();
                          }}));
  return rows;
}

std::vector<Row> MeasureGrowth(const std::string& folder, int tickets, int runs) {
  constexpr int kSmall = 10000;
  constexpr int kTicketsADay = 100;
  const StepClock clock;
  const auto office = [&](const char* name, int count) {
    const std::string path = folder + name;
    MakeLargeStore(path, {count, count / kTicketsADay, 1000, 1}, clock);
    return std::make_unique<Office>(path, clock);
  };
  const auto small = office("/poco.db", kSmall);
  const auto large = office("/mucho.db", tickets);
  const std::string day = ToDayFirst(FirstDay(clock, 20));
  return {Compare("a day's journal, " + std::to_string(tickets) + " tickets against 10,000", runs,
                  {{}, [&] { large->Journal(day, day); }}, {{}, [&] { small->Journal(day, day); }})};
}

}  // namespace tpv::bench
