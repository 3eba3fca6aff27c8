// The manager's panel on random stores: every chart comes to what the sales journal lists
// for the same days.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>
#include <numeric>
#include <random>

#include "adapters/sqlite/functions.h"
#include "base/mask.h"
#include "base/rounding.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "panel/monthly_sums.h"
#include "panel/pictures.h"
#include "panel/sums_text.h"
#include "platform/month_memory.h"
#include "reports/sales_journal_statements.h"
#include "tests/test_till.h"

namespace tpv::panel {
namespace {

using Row = std::pair<const char*, const char*>;

TEST(PanelPeriods, StandBesideTheSamePeriodBefore) {
  const DateTime today{2026, 3, 31, 18};  // a Tuesday; the February before is shorter
  const std::pair<Span, Row> spans[] = {{Span::Today, {"31/03/2026", "30/03/2026"}},
                                        {Span::Yesterday, {"30/03/2026", "29/03/2026"}},
                                        {Span::Week, {"30/03/2026 - 31/03/2026", "23/03/2026 - 24/03/2026"}},
                                        {Span::Month, {"01/03/2026 - 31/03/2026", "01/02/2026 - 28/02/2026"}},
                                        {Span::Year, {"01/01/2026 - 31/03/2026", "01/01/2025 - 31/03/2025"}}};
  for (const auto& [span, days] : spans) {
    const Periods periods = PeriodsOf(span, today);
    EXPECT_EQ(periods.now.Text(), days.first);
    EXPECT_EQ(periods.before.Text(), days.second);
  }
  EXPECT_EQ(PeriodsOf(Span::Year, {2024, 2, 29}).before.Text(), "01/01/2023 - 28/02/2023");
  EXPECT_EQ(PeriodsOf(Days{{2026, 3, 1}, {2026, 3, 10}}).before.Text(), "19/02/2026 - 28/02/2026");
}

// Tickets of two years before `today`, most of them lately, with all that a store may hold.
class RandomShop {
 public:
  RandomShop(Connection& store, unsigned seed, const DateTime& today) : store_(store), random_(seed), today_(today) {
    Transaction transaction(store);
    for (const char* rate : {"21", "10", "4", "5.5", "0"}) {
      store.Execute("INSERT INTO zrcomun.dbo.tivas (Tiva_iva,tiva_reg) VALUES (" + std::string(rate) + ",1)");
    }
    for (int ticket = 1; ticket <= 250; ++ticket) AddTicket(ticket);
    transaction.Commit();
  }

  DateTime Day() { return StartOfDay(AddDays(today_, -(Below(2) != 0 ? Below(40) : Below(730)))); }
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

 private:
  void AddTicket(int id) {
    const std::string when = ToDayFirstSeconds(AddSeconds(Day(), Below(86400)));
    const std::string no_ticket = Below(9) == 0 ? "0" : "1";
    store_.Execute("INSERT INTO Cav (Cav_Numero,Cav_Fecha,Cav_Caja,Cav_Agente,Cav_IdCli,Cav_Ticket,Cav_Cobrado) VALUES (" +
                   std::to_string(id) + ",'" + when + "'," + Code(3) + "," + Code(15) + ",1," + no_ticket + "," +
                   std::to_string(Below(2)) + ")");
    for (int line = Below(8); line > 0; --line) AddLine(id);  // some have none
    if (Below(3) != 0) AddCollection(id, when);
  }
  void AddLine(int ticket) {
    const double decimals = Below(3) == 0 ? 1000 : 100;
    const double amount = (Below(200000) - 30000) / decimals;
    store_.Execute("INSERT INTO Lav (Lav_IdCav,Lav_Idart,Lav_Uni,Lav_Importe,Lav_Tiva) VALUES (" +
                   std::to_string(ticket) + "," + Code(30) + "," + sql::Number(std::int64_t{Below(9) - 2}) + "," +
                   (Below(40) == 0 ? "NULL" : sql::Number(amount)) + "," + std::to_string(Below(6) + 1) + ")");
  }
  void AddCollection(int ticket, const std::string& when) {
    const std::string type = std::to_string(Below(4));
    store_.Execute("INSERT INTO DiaCaj (DiaCaj_Fecha,DiaCaj_Caja,DiaCaj_Tipo,DiaCaj_Entrega,DiaCaj_Tarjeta,"
                   "DiaCaj_Devolucion,DiaCaj_Descuento,DiaCaj_Cobrado) VALUES ('" + when + "',1," + type + "," +
                   Euros() + "," + Euros() + "," + Euros() + "," + Euros() + "," + Euros() + ")");
    store_.Execute("INSERT INTO Tco (Tco_IdDiaCaj,Tco_IdCav,Tco_Importe) VALUES (0," + std::to_string(ticket) + "," +
                   Euros() + ")");
  }
  std::string Code(int end) { return Below(20) == 0 ? "NULL" : std::to_string(Below(end) + 1); }
  std::string Euros() { return sql::Number(Below(30000) / 100.0); }

  Connection& store_;
  std::mt19937 random_;
  DateTime today_;
};

long CentsOf(double euros) { return std::lround(RoundHalfAway(euros, 2) * 100); }

long Sum(const ChartData& chart, std::size_t series) {
  const auto& values = chart.values[series];
  return CentsOf(std::accumulate(values.begin(), values.end(), 0.0));
}

// What the journal's lists of those days come to.
struct Journal {
  Journal(Connection& store, const Days& days, const LineTax& tax) {
    for (const auto sales = store.Execute(journal::Sales(days.Between())); !sales->Eof(); sales->MoveNext()) {
      const double sale = sales->Field("Venta").NumberOr(0);
      const DateTime when = sales->Field("Cav_Fecha").ToDate();
      sold += sale;
      by_label["Caja " + std::to_string(sales->Field("Cav_Caja").IntOr(0))] += sale;
      by_label["Vendedor " + std::to_string(sales->Field("Agente").IntOr(0))] += sale;
      by_label[FormatDate(when, "DD/MM")] += sale;
      by_label[std::to_string(when.hour) + " h"] += sale;
    }
    lines = ReadSold(store, days.Between(), tax).total;
    for (const auto rows = store.Execute(journal::Collections(days.Between())); !rows->Eof(); rows->MoveNext()) {
      by_label["Metálico"] += rows->Field("Metalico").NumberOr(0);
      by_label["Tarjeta"] += rows->Field("Tarjeta").NumberOr(0);
    }
    collected = by_label["Metálico"] + by_label["Tarjeta"];
  }
  double sold = 0;
  double lines = 0;
  double collected = 0;
  std::map<std::string, double> by_label;
};

void Compare(const Board& board, std::size_t series, Journal& journal) {
  const auto pictures = Pictures(board);
  const auto of = [&](Picture picture) -> const ChartData& { return pictures[static_cast<std::size_t>(picture)]; };
  for (const Picture picture : {Picture::Days, Picture::Hours, Picture::Sellers, Picture::Tills}) {
    EXPECT_EQ(Sum(of(picture), series), CentsOf(journal.sold)) << of(picture).caption;
  }
  EXPECT_EQ(Sum(of(Picture::Articles), series), CentsOf(journal.lines));
  EXPECT_EQ(Sum(of(Picture::Rates), series), CentsOf(journal.lines));
  EXPECT_EQ(Sum(of(Picture::Means), series), CentsOf(journal.collected));
  for (const Picture picture : {Picture::Hours, Picture::Sellers, Picture::Tills, Picture::Means, Picture::Days}) {
    const ChartData& chart = of(picture);
    const bool by_month = picture == Picture::Days && chart.caption == "Ventas por mes";
    for (std::size_t i = 0; i < chart.labels.size() && !by_month; ++i) {
      if (chart.labels[i] == "Los demás" || (picture == Picture::Days && series == 1)) continue;
      EXPECT_EQ(CentsOf(chart.values[series][i]), CentsOf(journal.by_label[chart.labels[i]])) << chart.labels[i];
    }
  }
}

// As a server's store, which groups what is added up.
class Remote : public RecordingConnection {
 public:
  using RecordingConnection::RecordingConnection;
  MonthMemory* Months() override { return nullptr; }
};

TEST(Panel, EveryChartComesToTheJournalsTotal) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    TestStore store;
    TestTill till(store.Open(), store.clock());
    RandomShop shop(store.connection(), seed, store.clock().now);
    const LineTax tax = [](double amount, double rate) { return RoundHalfAway(amount * (rate / 100), 2); };
    std::vector<Periods> periods;
    for (const Span span : {Span::Today, Span::Week, Span::Month, Span::Year}) {
      periods.push_back(PeriodsOf(span, store.clock().now));
    }
    for (int i = 0; i < 3; ++i) {
      const DateTime one = shop.Day();
      const DateTime other = shop.Day();
      periods.push_back(PeriodsOf(Days{std::min(one, other), std::max(one, other)}));
    }
    double owed = 0;
    PendingTickets pending;
    for (const auto rows = store.connection().Execute(pending.Select()); !rows->Eof(); rows->MoveNext()) {
      owed += rows->Field("Pendiente").NumberOr(0);
    }
    for (const Periods& asked : periods) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ": " + asked.now.Text());
      const Board board = ReadBoard(till.context(), asked, tax);
      Remote remote(store.connection());
      EXPECT_TRUE(ReadSums(remote, asked.now, tax) == board.now);
      Journal now(store.connection(), asked.now, tax);
      Journal before(store.connection(), asked.before, tax);
      Compare(board, 0, now);
      Compare(board, 1, before);
      EXPECT_EQ(Sum(Pictures(board)[static_cast<std::size_t>(Picture::Pending)], 0), CentsOf(owed));
    }
  }
}

// Each line sold looks whether its month is kept, and reads nothing of what is. An older
// program's table, which was in the way, is made anew.
TEST(Panel, KeptMonthsAreInNoSalesWay) {
  TestStore store;
  sqlite3* tool = nullptr;
  ASSERT_EQ(sqlite3_open(store.path().c_str(), &tool), SQLITE_OK);
  const sqlite::Handle tools(tool);
  RegisterFunctions(tool, store.clock());
  const auto run = [&](const std::string& sql) {
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(tool, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
  };
  const auto pages_of_a_line = [&] {
    const auto taken = [&](int what) {
      int pages = 0;
      int most = 0;
      sqlite3_db_status(tool, what, &pages, &most, 1);
      return pages;
    };
    taken(SQLITE_DBSTATUS_CACHE_HIT);
    taken(SQLITE_DBSTATUS_CACHE_MISS);
    run("INSERT INTO Lav (Lav_IdCav,Lav_Idart,Lav_Uni,Lav_Importe,Lav_Tiva) VALUES (1,1,1,3,1)");
    return taken(SQLITE_DBSTATUS_CACHE_HIT) + taken(SQLITE_DBSTATUS_CACHE_MISS);
  };
  run("INSERT INTO Cav (Cav_Id,Cav_Fecha,Cav_Ticket) VALUES (1,'2026-03-10 10:00:00.000',1)");
  const std::string keep_forty =
      "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 50) "
      "INSERT INTO TpvMeses SELECT '20' || i || '-01', NULL, hex(zeroblob(100000)) FROM n";
  run("DROP TABLE TpvMeses; CREATE TABLE TpvMeses (Mes TEXT PRIMARY KEY, Marca TEXT, Texto TEXT) WITHOUT ROWID");
  const int before = pages_of_a_line();
  run(keep_forty);
  EXPECT_GT(pages_of_a_line(), before + 40);
  store.Open();
  run(keep_forty);
  EXPECT_LE(pages_of_a_line(), before + 4);
}

// Whoever changes what a kept month was made from, and whenever.
TEST(Panel, AKeptMonthIsForgottenWithWhateverChangesIt) {
  TestStore store;
  const auto panel = store.Open();
  Connection& other = store.connection();
  const DateTime today = store.clock().now;
  RandomShop shop(other, 1, today);
  other.Execute("INSERT INTO Cav (Cav_Id,Cav_Fecha,Cav_Ticket) VALUES (900,'10/03/2026 10:00',1)");
  other.Execute("INSERT INTO Lav (Lav_IdCav,Lav_Idart,Lav_Uni,Lav_Importe,Lav_Tiva) VALUES (900,1,1,333.33,1)");
  other.Execute("INSERT INTO DiaCaj (DiaCaj_Id,DiaCaj_Fecha,DiaCaj_Tipo,DiaCaj_Tarjeta) VALUES (900,'10/03/2026',1,5)");
  const Days year = PeriodsOf(Span::Year, today).now;
  const LineTax plain = [](double amount, double rate) { return RoundHalfAway(amount * (rate / 100), 2); };
  const auto read = [&](const LineTax& tax) {
    MonthlySums months(*panel, today);
    months.Announce(year);
    Sums sums = months.Read(year, tax);
    months.Keep();
    return sums;
  };
  const auto kept = [&] { return panel->Months()->Recall("2026-03"); };
  // A technician's tool, of whose replacing the engine tells no trigger.
  sqlite3* tool = nullptr;
  ASSERT_EQ(sqlite3_open(store.path().c_str(), &tool), SQLITE_OK);
  const sqlite::Handle tools(tool);
  RegisterFunctions(tool, store.clock());
  const auto change_by = [&](const std::string& change) {
    if (change.find(" OR REPLACE ") == std::string::npos) return static_cast<void>(other.Execute(change));
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(tool, change.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
  };
  EXPECT_TRUE(read(plain) == ReadSums(other, year, plain));
  for (const char* change :
       {"INSERT INTO Lav (Lav_IdCav,Lav_Idart,Lav_Uni,Lav_Importe,Lav_Tiva) VALUES (900,1,1,3,1)",
        "UPDATE Lav SET Lav_Uni = 7 WHERE Lav_IdCav = 900", "UPDATE Lav SET Lav_Tiva = 2 WHERE Lav_IdCav = 900",
        "UPDATE Cav SET Cav_Caja = 9 WHERE Cav_Id = 900", "UPDATE Cav SET Cav_Ticket = 0 WHERE Cav_Id = 900",
        "UPDATE Cav SET Cav_Ticket = 1 WHERE Cav_Id = 900", "UPDATE Cav SET Cav_Fecha = '10/02/2026' WHERE Cav_Id = 900",
        "UPDATE Cav SET Cav_Fecha = '10/03/2026' WHERE Cav_Id = 900",
        "INSERT INTO DiaCaj (DiaCaj_Fecha,DiaCaj_Tipo,DiaCaj_Entrega) VALUES ('31/03/2026 23:59:59',2,9)",
        "UPDATE DiaCaj SET DiaCaj_Tarjeta = 6 WHERE DiaCaj_Id = 900", "DELETE FROM DiaCaj WHERE DiaCaj_Id = 900",
        "INSERT OR REPLACE INTO Cav (Cav_Id,Cav_Fecha,Cav_Ticket) VALUES (900,'2026-02-10 00:00:00.000',1)",
        "INSERT OR REPLACE INTO Cav (Cav_Id,Cav_Fecha,Cav_Ticket) VALUES (900,'2026-03-10 00:00:00.000',1)",
        "UPDATE OR REPLACE Lav SET Lav_Id = (SELECT MAX(Lav_Id) FROM Lav WHERE Lav_IdCav = 900) WHERE Lav_Id = "
        "(SELECT MIN(Lav_Id) FROM Lav WHERE Lav_IdCav <> 900)",
        "UPDATE zrcomun.dbo.tivas SET Tiva_iva = 20 WHERE Tiva_Id = 1"}) {
    EXPECT_NE(kept(), "") << change;
    change_by(change);
    EXPECT_EQ(kept(), "") << change;
    EXPECT_TRUE(read(plain) == ReadSums(other, year, plain)) << change;
  }
  other.Execute("UPDATE Cav SET Cav_Cobrado = 1");  // not in the sums
  EXPECT_NE(kept(), "");
  // Changed while it is being read.
  other.Execute("UPDATE Lav SET Lav_Uni = 8 WHERE Lav_IdCav = 900");
  bool changed = false;
  read([&](double amount, double rate) {
    if (amount == 333.33 && !std::exchange(changed, true)) other.Execute("DELETE FROM Lav WHERE Lav_IdCav = 900");
    return plain(amount, rate);
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(kept(), "");
  EXPECT_TRUE(read(plain) == ReadSums(other, year, plain));
  // A text that is not whole counts for nothing.
  const std::string text = ToText(ReadSums(other, year, plain));
  EXPECT_TRUE(SumsFrom(text) == ReadSums(other, year, plain));
  for (const std::size_t length : {std::size_t{0}, text.size() / 2, text.size() - 1}) {
    EXPECT_FALSE(SumsFrom(text.substr(0, length)).has_value()) << length;
  }
}

}  // namespace
}  // namespace tpv::panel
