// How often a till's work goes to a server: nothing is asked twice that belongs
// together, and what is asked later is new.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/asked_once.h"
#include "tests/test_till.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

class ServerTrips : public testing::Test {
 protected:
  // What went out between one mark of the script and the next, transactions' ends included.
  long Between(const std::string& mark) const {
    const auto at = std::find(line_->sent.begin(), line_->sent.end(), "SELECT '" + mark + "'");
    const auto end = std::find_if(at + 1, line_->sent.end(), [](const std::string& sql) {
      return sql.starts_with("SELECT '");
    });
    return end - at - 1;
  }
  std::unique_ptr<Connection> Line() {
    auto line = std::make_unique<Tape>(OpenStore(path_, Contents::Demonstration, clock_));
    line_ = line.get();
    return std::make_unique<AskedOnce>(std::move(line));
  }

  class Tape : public RecordingConnection {
   public:
    using RecordingConnection::RecordingConnection;
    void BeginTrans() override {
      sent.emplace_back("BEGIN");
      RecordingConnection::BeginTrans();
    }
    void CommitTrans() override {
      sent.emplace_back("COMMIT");
      RecordingConnection::CommitTrans();
    }
  };

  StepClock clock_;
  TemporaryFolder folder_;
  const std::string path_ = folder_ / "tienda.db";
  Tape* line_ = nullptr;
};

TEST_F(ServerTrips, AreNoMoreThanASaleNeeds) {
  TestTill till(Line(), clock_);
  EXPECT_EQ(till.Play("set Caja 2\ncall zTpv\nenter Text1(6) 2\nenter Text1(0) 2\nclick cmdApertura\n"
                      "enter Text1(14) 100\nclick cmdGrabar\nanswer Yes\nkey Add\nsql SELECT 'scan'\ntype 0121\n"
                      "key Enter\nsql SELECT 'checkout'\nkey Subtract\nsql SELECT 'finish'\nclick cmdTicket\n"
                      "sql SELECT 'end'"), "");
  EXPECT_LE(Between("scan"), 17);
  EXPECT_LE(Between("checkout"), 9);
  EXPECT_LE(Between("finish"), 22);
}

TEST_F(ServerTrips, AskAgainForWhatAnotherTillMayHaveChanged) {
  const auto till = Line();
  SqliteConnection other(path_, clock_);
  const auto rename = [&](const std::string& name) { other.Execute("UPDATE Parametros SET Par_Nombre = '" + name + "'"); };
  const auto name = [&] { return till->Execute("SELECT TOP 1 * FROM Parametros")->Field("par_nombre").ToText(); };
  rename("A");
  EXPECT_EQ(name(), "A");
  rename("B");
  EXPECT_EQ(name(), "B");
  {
    const Snapshot snapshot(*till);
    const auto before = line_->sent.size();
    EXPECT_EQ(name() + name(), "BB");
    EXPECT_EQ(line_->sent.size(), before + 1);
    Transaction transaction(*till);
    till->Execute("UPDATE Parametros SET Par_Nombre = 'C'");
    EXPECT_EQ(name(), "C");
    transaction.Commit();
    EXPECT_EQ(name(), "C");
    till->Execute("UPDATE Parametros SET Par_Nombre = 'D'");
    EXPECT_EQ(name(), "D");
  }
  rename("E");
  EXPECT_EQ(name(), "E");
}

}  // namespace
}  // namespace tpv
