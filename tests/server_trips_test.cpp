// How often a till's work goes to a server: no more often than somebody who writes the
// statements by hand, with the same guarantees. Nothing is asked twice that belongs
// together, what a transaction relies on is asked in it, and what is asked later is new.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/asked_once.h"
#include "tests/test_till.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

// Notes every journey, the ends of transactions too.
class Journeys : public RecordingConnection {
 public:
  using RecordingConnection::RecordingConnection;
  void BeginTrans() override {
    RecordingConnection::BeginTrans();
    sent.emplace_back("BEGIN");
  }
  void CommitTrans() override {
    RecordingConnection::CommitTrans();
    sent.emplace_back("COMMIT");
  }
};

using Statements = std::vector<std::string>;

// What each statement that is needed says, in the order of the work.
const Statements kScan = {
    "Select art_id", "FROM Parametros", "zrcomun.dbo.tivas", "FROM Bajas",
    "BEGIN", "AS Cobrado", "INSERT INTO Lav", "MAX(Lav_Id)", "INSERT INTO Movi", "exis_uni FROM Exis",
    "UPDATE Exis", "COMMIT",
    "FROM Lav", "as Totales"};
const Statements kCheckout = {"FROM Parametros", "dbo.TVI", "dbo.PAIS", "dbo.PROV", "from Fco", "FROM Bajas",
                              "as Totales", "FROM Cli", "AS Pendiente"};
// Parameters: whether there is a record, in the transaction; the paper's head, in one state with
// its lines; and the next sale's customer, behind the paper.
const Statements kFinish = {
    "BEGIN", "AS Cobrado", "UPDATE Cav", "DELETE FROM VentasEnCurso", "SELECT DiaCaj_Tipo", "AS Ahora",
    "INSERT INTO DiaCaj", "MAX(DiaCaj_Id)", "INSERT INTO Tco", "FROM Parametros", "COMMIT",
    "as Total From Lav", "SELECT Cav_Serie", "SELECT TOP 1 DiaCaj_Modo", "FROM Parametros",
    "FROM Lav", "FROM Parametros", "as Totales", "FROM Cli"};
const Statements kTills = {"SELECT DISTINCT", "DIACAJ_CAJA = 1 ", "DIACAJ_CAJA = 2 ", "DIACAJ_CAJA = 3 "};
const Statements kFigures = {"as Vendedor", "AS Apuntes", "AS Cobros", "AS Venta"};
// The day is asked before the operator confirms, and again where it counts; at the end the sale
// screen asks for its till.
const Statements kClosing = {
    "AS Ahora", "BEGIN", "SELECT DiaCaj_Tipo", "AS Ahora", "AS Apuntes", "FROM VentasEnCurso", "INSERT INTO DiaCaj",
    "MAX(DiaCaj_Id)", "Where DiaCaj_Id=", "DiaCaj_Tipo =3", "COMMIT", "FROM Parametros",
    "SELECT DISTINCT", "DIACAJ_CAJA = 1 ", "DIACAJ_CAJA = 2 ", "DIACAJ_CAJA = 3 ", "SELECT DiaCaj_Tipo"};

class ServerTrips : public testing::Test {
 protected:
  std::unique_ptr<Connection> Line() {
    auto line = std::make_unique<Journeys>(OpenStore(path_, Contents::Demonstration, clock_));
    sent_ = &line->sent;
    return std::make_unique<AskedOnce>(std::move(line));
  }

  // The first statement sent behind this mark that is not needed where it comes; "" for none.
  std::string Surplus(const std::string& mark, const Statements& needed) const {
    const auto marked = std::find(sent_->begin(), sent_->end(), "SELECT '" + mark + "'");
    if (marked == sent_->end()) return "no mark " + mark;
    auto next = needed.begin();
    for (auto sent = marked + 1; sent != sent_->end() && !sent->starts_with("SELECT '"); ++sent) {
      const auto says = [&](const std::string& need) { return sent->find(need) != std::string::npos; };
      next = std::find_if(next, needed.end(), says);
      if (next == needed.end()) return *sent;
      ++next;
    }
    return next == needed.begin() ? "nothing was sent" : "";
  }

  StepClock clock_;
  TemporaryFolder folder_;
  const std::string path_ = folder_ / "tienda.db";
  std::vector<std::string>* sent_ = nullptr;
};

TEST_F(ServerTrips, AreNoMoreThanByHand) {
  TestTill till(Line(), clock_);
  EXPECT_EQ(till.Play("set Caja 2\ncall zTpv\nenter Text1(6) 2\nenter Text1(0) 2\nclick cmdApertura\n"
                      "enter Text1(14) 100\nclick cmdGrabar\nanswer Yes\nkey Add\n"
                      "sql SELECT 'scan'\ntype 0121\nkey Enter\nsql SELECT 'checkout'\nkey Subtract\n"
                      "sql SELECT 'finish'\nclick cmdTicket\nsql SELECT 'close'\nclick cmdCierre\n"
                      "enter Text1(11) 2\nsql SELECT 'tills'\nclick cmdProceso\nsql SELECT 'figures'\n"
                      "select ListView1 0\nenter Text1(4) 0\nclick Check1\nsql SELECT 'closing'\n"
                      "click cmdGrabar\nanswer Yes\nanswer OK\nsql SELECT 'closed'"), "");
  EXPECT_EQ(Surplus("scan", kScan), "");
  EXPECT_EQ(Surplus("checkout", kCheckout), "");
  EXPECT_EQ(Surplus("finish", kFinish), "");
  EXPECT_EQ(Surplus("tills", kTills), "");
  EXPECT_EQ(Surplus("figures", kFigures), "");
  EXPECT_EQ(Surplus("closing", kClosing), "");
}

TEST_F(ServerTrips, AskAgainForWhatAnotherTillMayHaveChanged) {
  const auto till = Line();
  SqliteConnection other(path_, clock_);
  const auto rename = [&](Connection& by, const std::string& name) {
    by.Execute("UPDATE Parametros SET Par_Nombre = '" + name + "'");
  };
  const auto name = [&] { return till->Execute("SELECT TOP 1 * FROM Parametros")->Field("par_nombre").ToText(); };
  rename(other, "A");
  EXPECT_EQ(name(), "A");
  rename(other, "B");
  {
    const Snapshot snapshot(*till);
    const auto before = sent_->size();
    EXPECT_EQ(name() + name(), "BB");
    EXPECT_EQ(sent_->size(), before + 1);
    Transaction transaction(*till);
    rename(*till, "C");
    EXPECT_EQ(name(), "C");
    transaction.Commit();
    EXPECT_EQ(name(), "C");
    rename(*till, "D");
    EXPECT_EQ(name(), "D");
  }
  rename(other, "E");
  const Snapshot snapshot(*till);
  EXPECT_EQ(name(), "E");
  rename(other, "F");
  {
    const Transaction transaction(*till);
    const auto before = sent_->size();
    EXPECT_EQ(name() + name(), "FF");  // what it relies on is asked in it
    EXPECT_EQ(sent_->size(), before + 1);
  }
  {
    const Transaction undone(*till);
    rename(*till, "G");
    EXPECT_EQ(name(), "G");
  }
  EXPECT_EQ(name(), "F");
}

}  // namespace
}  // namespace tpv
