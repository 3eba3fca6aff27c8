#include "bench/measures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "adapters/sqlite/dialect/scanner.h"
#include "adapters/sqlite/statement_cache.h"
#include "base/text.h"
#include "bench/closing_bench.h"
#include "bench/direct_lists.h"
#include "bench/direct_till.h"
#include "bench/ground.h"
#include "bench/office.h"
#include "bench/records.h"
#include "bench/ten_line_sales.h"
#include "host/fiscal_check.h"
#include "host/store.h"
#include "tests/fiscal_ground.h"

namespace tpv::bench {

namespace {

constexpr int kTicketsADay = 1000;

class StoreMeasures {
 public:
  StoreMeasures(const std::string& path, const LargeStore& size, int runs)
      : size_(size),
        runs_(runs),
        connection_(path, clock_),
        store_(path, clock_),
        office_(path, clock_) {
    RequireSameDebt();
  }

  Row Scan() { return Scan({"scan to stored and redrawn line (10-line ticket)", 1.15, 1.2}); }
  Row ScanUnsynchronised() {
    connection_.SetSynchronous(false);
    store_.Run("PRAGMA synchronous = OFF");
    Row row = Scan({"scan, synchronous writes off", 1.6, 1.2});
    connection_.SetSynchronous(true);
    store_.Run("PRAGMA synchronous = FULL");
    return row;
  }
  Row Finish() {
    return Compare({"finish a sale, checkout open to printed text", 1.15, 1.2}, Runs(5),
                   sales_.Finishing(), direct_sales_.Finishing());
  }
  Row State() {
    return Compare({"till state, last ticket of the till, next number", 1.3, 1.2}, runs_,
                   {{}, [this] { till_.State(); }}, {{}, [this] { direct_.TillState(); }});
  }
  Row Debt() {
    return Compare({"a customer's 20 pending tickets and debt", 1.2, 1.2}, runs_,
                   {{}, [this] { till_.Debt(kDebtor); }}, {{}, [this] { direct_.Debt(kDebtor); }});
  }
  Row Pending() {
    DirectLists direct(store_, Day(1), Day(1));
    Row row = Compare({"pending list of all customers (5,000 open tickets or more)", 1.3, 1.3}, Runs(30),
                      {{}, [this] { office_.Pending(); }}, {{}, [&] { direct.Pending(); }});
    row.items = connection_.Execute("SELECT COUNT(*) FROM Cav WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0")->Field(0).NumberOr(0);
    return row;
  }
  Row DayJournal() {
    return Journal({"a day's sales journal (1,000 tickets), both grids", 1.3, 1.3}, 3, 3, 20);
  }
  Row MonthJournal() {
    return Journal({"a month's sales journal (30,000 tickets)", 1.3, 1.3}, MonthDays(), 1, 200);
  }
  Row DayPanel() { return Panel({"the panel of a day (1,000 tickets)", 1.5, 1.3, 50000}, 3, 3, 20); }
  Row WholePanel() { return Panel({"the panel of all tickets", 1.5, 1.3, 2e6}, size_.days, 1, 200); }
  // As the first time, or after a tax rate has changed.
  Row WholePanelAnew() {
    return Panel({"the same, no month kept", 1.5, 1.3, 2e6}, size_.days, 1, 200,
                 [this] { store_.Run("DELETE FROM TpvMeses"); });
  }
  Row Closures() {
    const DateTime from = *ParseIso(kClosuresFrom);
    const DateTime to = *ParseIso(kClosuresTo);
    DirectLists direct(store_, from, to);
    return Compare({"closures journal of a year, 3 tills", 1.3, 1.2}, Runs(10),
                   {{}, [&] { office_.Closures(ToDayFirst(from), ToDayFirst(to)); }},
                   {{}, [&] { direct.Closures(); }});
  }
  Row SearchMonth() {
    return Invoicing({"a month's period invoicing (30,000 tickets), search", 1.15, 1.15}, false);
  }
  Row InvoiceMonth() { return Invoicing({"the same, search and invoice", 1.15, 1.15}, true); }
  Row Closing() { return CompareClosing(till_, store_, 10000, Runs(20)); }
  Row SaleScreen() {
    return Measure({"open the sale screen (model only)", 0, 1.2, 2000}, Runs(5),
                   {{}, [this] { office_.SaleScreen(); }});
  }

  // Beside the same sale without its record, in turn. Each switch makes the till read its
  // short lists again, which no sale of a shop does: one that is not measured goes before.
  Row FinishRecorded() {
    MakeRecords(connection_);
    const auto with = [this](const char* mode) {
      Work work = sales_.Finishing();
      work.prepare = [this, mode, scan = work.prepare, finish = work.run] {
        connection_.Execute(std::string("UPDATE Parametros SET Par_Fiscal = ") + mode);
        scan();
        finish();
        scan();
      };
      return work;
    };
    Row row = Compare({"finish a sale with its invoice record", 1.25, 1.2}, Runs(5), with("1"), with("0"));
    connection_.Execute("UPDATE Parametros SET Par_Fiscal = 0");
    return row;
  }
  // A million in 20 seconds.
  Row CheckRecords() {
    constexpr double kMicrosecondsEach = 20;
    RecordAllTickets(connection_);
    const auto records = static_cast<double>(CheckFiscal(connection_).records);
    Row row = Measure({"check of the invoice records", 0, 1.3, kMicrosecondsEach * records}, 3,
                      {{}, [this] { CheckFiscal(connection_); }});
    row.items = records;
    return row;
  }

  // The statements of a scan, in turn.
  Row Ready() {
    const std::vector<std::string> statements = StatementsOfAScan();
    sqlite::StatementCache cache(store_.handle());
    const auto ready = [&](const std::string& statement) {
      const auto shape = cache.Find(dialect::Scan(statement).shape);
      sqlite::StatementCache::Return(*shape, cache.Take(*shape));
    };
    for (const std::string& statement : statements) ready(statement);
    std::size_t at = 0;
    return Measure({"statement text to ready statement (hit in the cache)", 0, 1, 2}, 10 * runs_,
                   {{}, [&] { ready(statements[at++ % statements.size()]); }});
  }

 private:
  int Runs(int part) const { return std::max(5, runs_ / part); }
  int MonthDays() const { return std::min(30, size_.days); }

  void RequireSameDebt() {
    for (const int customer : {2, 10, 30, kDebtor}) {
      if (std::fabs(till_.Debt(customer) - direct_.Debt(customer)) > 0.005) {
        throw std::runtime_error("the two sides disagree on what is owed");
      }
    }
  }

  Row Scan(const Subject& subject) {
    Row row = Compare(subject, runs_, sales_.Scanning(), direct_sales_.Scanning());
    sales_.End();
    direct_sales_.End();
    return row;
  }

  // From so many days ago to so many.
  Row Journal(const Subject& subject, int first, int last, int part) {
    const DateTime from = Day(first);
    const DateTime to = Day(last);
    DirectLists direct(store_, from, to);
    Row row = Compare(subject, Runs(part),
                      {{}, [&] { office_.Journal(ToDayFirst(from), ToDayFirst(to)); }},
                      {{}, [&] { direct.Journal(); }});
    row.items = first - last + 1;
    return row;
  }

  Row Panel(const Subject& subject, int first, int last, int part, const std::function<void()>& prepare = {}) {
    const DateTime from = Day(first);
    const DateTime to = Day(last);
    const int days = first - last + 1;
    DirectLists direct(store_, from, to);
    office_.OpenPanel(ToDayFirst(from), ToDayFirst(to));
    Row row = Compare(subject, Runs(part), {prepare, [&] { office_.ShowPanel(); }},
                      {{}, [&] { direct.Panel(AddDays(from, -days), AddDays(to, -days)); }});
    office_.ClosePanel();
    row.items = days;
    return row;
  }

  Row Invoicing(const Subject& subject, bool make_invoice) {
    const DateTime from = Day(MonthDays());
    const DateTime to = Day(1);
    DirectLists direct(store_, from, to);
    const auto forget = [&] { direct.Forget(); };
    Row row = Compare(
        subject, Runs(200),
        {forget, [&] { office_.Invoicing(ToDayFirst(from), ToDayFirst(to), make_invoice); }},
        {forget, [&] {
           direct.SearchPeriod();
           if (make_invoice) direct.InvoicePeriod();
         }});
    forget();
    row.items = MonthDays();
    return row;
  }

  std::vector<std::string> StatementsOfAScan() {
    RecordingConnection tape(connection_);
    Till till(tape);
    till.StartSale();
    tape.sent.clear();
    till.Scan("0007");
    std::vector<std::string> statements = std::exchange(tape.sent, {});
    till.Finish();
    return statements;
  }

  DateTime Day(int days_ago) const {
    const DateTime now = clock_.Now();
    return AddDays({now.year, now.month, now.day}, -days_ago);
  }

  const StepClock clock_;
  const LargeStore size_;
  const int runs_;
  SqliteConnection connection_;
  DirectStore store_;
  Office office_;
  Till till_{connection_};
  DirectTill direct_{store_};
  TenLineSales<Till> sales_{till_, size_.articles};
  TenLineSales<DirectTill> direct_sales_{direct_, size_.articles};
};

struct NamedRow {
  const char* name;  // by which it is asked for
  Row (StoreMeasures::*row)();
};

// The shortest first, and what writes much last.
constexpr NamedRow kRows[] = {{"scan", &StoreMeasures::Scan},
                             {"unsynchronised", &StoreMeasures::ScanUnsynchronised},
                             {"finish", &StoreMeasures::Finish},
                             {"state", &StoreMeasures::State},
                             {"debt", &StoreMeasures::Debt},
                             {"pending", &StoreMeasures::Pending},
                             {"day", &StoreMeasures::DayJournal},
                             {"month", &StoreMeasures::MonthJournal},
                             {"daypanel", &StoreMeasures::DayPanel},
                             {"panel", &StoreMeasures::WholePanel},
                             {"panelanew", &StoreMeasures::WholePanelAnew},
                             {"closures", &StoreMeasures::Closures},
                             {"search", &StoreMeasures::SearchMonth},
                             {"invoice", &StoreMeasures::InvoiceMonth},
                             {"closing", &StoreMeasures::Closing},
                             {"ready", &StoreMeasures::Ready},
                             {"salescreen", &StoreMeasures::SaleScreen},
                             {"recorded", &StoreMeasures::FinishRecorded},
                             {"records", &StoreMeasures::CheckRecords}};

// Each ticket of a store is looked at by these.
bool GoesThroughAll(Row (StoreMeasures::*row)()) {
  return row == &StoreMeasures::WholePanel || row == &StoreMeasures::WholePanelAnew ||
         row == &StoreMeasures::FinishRecorded || row == &StoreMeasures::CheckRecords;
}


LargeStore Sized(int tickets, int articles) {
  return {tickets, std::max(1, tickets / kTicketsADay), articles, 1};
}

// The rows so named, "search,closing"; all where none is.
std::vector<NamedRow> Asked(const std::string& names) {
  const std::vector<std::string> asked = Split(names, ",");
  std::vector<NamedRow> rows;
  for (const NamedRow& row : kRows) {
    if (names.empty() || std::find(asked.begin(), asked.end(), row.name) != asked.end()) rows.push_back(row);
  }
  return rows;
}

std::unique_ptr<StoreMeasures> Prepare(const StoreSize& store, int articles, int runs) {
  const LargeStore size = Sized(store.tickets, articles);
  const StepClock clock;
  MakeLargeStore(store.path, size, clock);
  AddCommonGround(store.path, clock);
  return std::make_unique<StoreMeasures>(store.path, size, runs);
}

}  // namespace

void MeasureStores(const StoreSize& small, const StoreSize& large, int articles, int runs, const std::string& only) {
  const auto here = Prepare(small, articles, runs);
  const auto there = Prepare(large, articles, runs);
  std::vector<Row> small_rows;
  std::vector<Row> large_rows;
  for (const auto& [name, row] : Asked(only)) {
    small_rows.push_back((*here.*row)());
    large_rows.push_back((*there.*row)());
  }
  std::printf("A store of %d tickets and %d articles, grown from %d tickets:\n\n", large.tickets,
              articles, small.tickets);
  Print(large_rows, small_rows);
}

void MeasureDecade(const StoreSize& small, const std::string& path, const DecadeSize& size, int runs,
                   const std::string& only) {
  if (!std::filesystem::exists(path)) {
    MakeDecade(path, size);
    PrintUpkeep(path);
    std::fflush(stdout);
    AddCommonGround(path, StepClock());
  }
  const auto here = Prepare(small, size.articles, runs);
  const auto there = std::make_unique<StoreMeasures>(path, Sized(size.tickets * size.parts, size.articles), runs);
  std::vector<Row> small_rows;
  std::vector<Row> large_rows;
  for (const auto& [name, row] : Asked(only)) {
    if (GoesThroughAll(row)) continue;
    small_rows.push_back((*here.*row)());
    large_rows.push_back((*there.*row)());
  }
  std::printf("\nA store of %d tickets, %d articles and %d customers, grown from %d tickets:\n\n", size.tickets * size.parts,
              size.articles, size.customers, small.tickets);
  Print(large_rows, small_rows);
}

}  // namespace tpv::bench
