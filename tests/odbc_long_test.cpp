// A statement that takes long on a server: the till shows that it waits and can give up.
#include <gtest/gtest.h>

#include "platform/pulse.h"
#include "tests/odbc_store.h"

namespace tpv {
namespace {

class Operator : public PulseListener {
 public:
  int patience = 1000;
  int pulses = 0;
  void OnPulse(double) override {
    if (++pulses > patience) throw GivenUp();
  }
};

TEST(LongStatement, PulsesWhileItRunsAndEndsWhenItIsGivenUp) {
  if (kPretendedServer == nullptr) GTEST_SKIP() << "no ODBC driver for SQLite here";
  constexpr const char* kLong = "SELECT 1 WHERE 1 = 1 /* WAITFOR */";
  const OdbcStore store(kPretendedServer);
  const auto till = store.Open();
  Operator hand;
  EXPECT_EQ(till->Execute(kLong)->Field(0).ToInt32(), 1);
  EXPECT_GE(hand.pulses, 3);
  for (const bool inside : {false, true}) {
    hand.pulses = 0;
    hand.patience = 1000;
    std::optional<Transaction> transaction;
    if (inside) {
      transaction.emplace(*till);
      till->Execute("INSERT INTO Pro (Pro_Cod) VALUES (1)");
    }
    hand.patience = 1;
    EXPECT_THROW(till->Execute(kLong), GivenUp);
    EXPECT_EQ(hand.pulses, 2) << "and no longer";
    hand.patience = 1000;
    transaction.reset();
    EXPECT_EQ(till->Execute("SELECT COUNT(*) FROM Pro")->Field(0).ToInt32(), 0);
  }
  // What is stored at once is not given up: nobody would know whether it is there.
  hand.patience = 0;
  EXPECT_NO_THROW(till->Execute("INSERT INTO Pro (Pro_Cod) VALUES (1) /* WAITFOR */"));
}

}  // namespace
}  // namespace tpv
