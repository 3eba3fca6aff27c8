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
  std::unique_ptr<Connection> Line() {
    auto line = std::make_unique<RecordingConnection>(OpenStore(path_, Contents::Demonstration, clock_));
    sent_ = &line->sent;
    return std::make_unique<AskedOnce>(std::move(line));
  }

  StepClock clock_;
  TemporaryFolder folder_;
  const std::string path_ = folder_ / "tienda.db";
  std::vector<std::string>* sent_ = nullptr;
};

TEST_F(ServerTrips, AreNoMoreThanASaleNeeds) {
  TestTill till(Line(), clock_);
  EXPECT_EQ(till.Play("set Caja 2\ncall zTpv\nenter Text1(6) 2\nenter Text1(0) 2\nclick cmdApertura\n"
                      "enter Text1(14) 100\nclick cmdGrabar\nanswer Yes\nkey Add\nsql SELECT 'scan'\ntype 0121\n"
                      "key Enter\nsql SELECT 'checkout'\nkey Subtract\nsql SELECT 'finish'\nclick cmdTicket"), "");
  const auto at = [&](const char* mark) { return std::find(sent_->begin(), sent_->end(), std::string("SELECT '") + mark + "'"); };
  EXPECT_LE(at("checkout") - at("scan"), 16);  // with the mark, without a transaction's ends
  EXPECT_LE(at("finish") - at("checkout"), 10);
  EXPECT_LE(sent_->end() - at("finish"), 21);
}

TEST_F(ServerTrips, AskAgainForWhatAnotherTillMayHaveChanged) {
  const auto till = Line();
  SqliteConnection other(path_, clock_);
  const auto rename = [&](const std::string& name) { other.Execute("UPDATE Parametros SET Par_Nombre = '" + name + "'"); };
  const auto name = [&] { return till->Execute("SELECT TOP 1 * FROM Parametros")->Field("par_nombre").ToText(); };
  rename("A");
  EXPECT_EQ(name(), "A");
  rename("B");
  {
    const Snapshot snapshot(*till);
    const auto before = sent_->size();
    EXPECT_EQ(name() + name(), "BB");
    EXPECT_EQ(sent_->size(), before + 1);
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
