// Tills that wait for each other to write: in the order in which they came, and past
// those who died, hang or know of no order.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "adapters/sqlite/waiting_line.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

using namespace std::chrono_literals;
using sqlite::WaitingLine;

TEST(WaitingLine, IsLeftInTheOrderInWhichItWasCome) {
  const TestFolder folder;
  const std::string store = folder / "tienda.db";
  std::ofstream(store).close();
  WaitingLine first(store);
  WaitingLine second(store);
  ASSERT_TRUE(first.IsThere() && second.IsThere());
  const auto a = first.Come();
  const auto b = second.Come();
  const auto c = first.Come();
  EXPECT_TRUE(first.IsTurnOf(a) && !second.IsTurnOf(b) && !first.IsTurnOf(c));
  std::jthread leaver([&] {
    std::this_thread::sleep_for(50ms);
    first.LeaveSoon(a);
    first.Leave(a);
  });
  const auto start = std::chrono::steady_clock::now();
  while (!second.IsTurnOf(b)) second.Wait(b, 60s);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);  // woken, not at the end of its patience
  EXPECT_FALSE(first.IsTurnOf(c));
  first.Leave(c);  // it did not wait for its turn: b is passed over
  const auto d = second.Come();
  EXPECT_TRUE(second.IsTurnOf(b) && second.IsTurnOf(d));
  second.Leave(b);
  EXPECT_TRUE(second.IsTurnOf(d));
}

TEST(WaitingLine, IsNoneWhereItIsNotToBeHad) {
  const TestFolder folder;
  const std::string store = folder / "tienda.db";
  std::ofstream(folder / "lejos").close();
  std::ofstream(store).close();
  std::filesystem::create_symlink(folder / "lejos", store + "-turnos");
  EXPECT_FALSE(WaitingLine(store).IsThere());
  EXPECT_EQ(folder.Text("lejos"), "");
  EXPECT_FALSE(WaitingLine("/proc/self/maps").IsThere());
}

// Another process's till.
class Waiting : public testing::Test {
 protected:
  ~Waiting() override {
    if (other_ > 0) ::kill(other_, SIGKILL);
    if (other_ > 0) ::waitpid(other_, nullptr, 0);
  }
  void Other(const std::function<void(SqliteConnection&)>& work) {
    other_ = ::fork();
    if (other_ != 0) return;
    try {
      SqliteConnection till(store_.path(), store_.clock());
      work(till);
      ::_exit(0);
    } catch (const DatabaseError&) {
      ::_exit(1);
    }
  }
  static void Sell(SqliteConnection& till) { till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')"); }
  static void Freeze() { ::raise(SIGSTOP); }
  void AwaitFrozen() const { ::waitpid(other_, nullptr, WUNTRACED); }
  void Thaw() const { ::kill(other_, SIGCONT); }
  std::string Sold() { return store_.Value("SELECT COUNT(*) FROM Age"); }

  TestStore store_;
  SqliteConnection till_{store_.path(), store_.clock()};
  pid_t other_ = 0;
};

TEST_F(Waiting, GoesOnWhenTheHolderDies) {
  Other([](SqliteConnection& till) {
    till.BeginTrans();
    Sell(till);
    Freeze();
  });
  AwaitFrozen();
  const std::jthread killer([this] {
    std::this_thread::sleep_for(100ms);
    ::kill(other_, SIGKILL);
  });
  Sell(till_);  // who waits in vain is told so
  EXPECT_EQ(Sold(), "1");
}

TEST_F(Waiting, LastsAsLongAsAFrozenHolderAndThenGoesOn) {
  Other([](SqliteConnection& till) {
    till.BeginTrans();
    Freeze();
    Sell(till);
    till.CommitTrans();
  });
  AwaitFrozen();
  EXPECT_THROW(Sell(till_), DatabaseError);
  Thaw();
  Sell(till_);
  EXPECT_EQ(Sold(), "2");
}

TEST_F(Waiting, PassesOverWhoHangsInTheLine) {
  Other([](SqliteConnection& till) {
    Freeze();
    Sell(till);
  });
  AwaitFrozen();
  till_.BeginTrans();
  Thaw();
  std::this_thread::sleep_for(300ms);  // it is in line now
  ::kill(other_, SIGSTOP);
  AwaitFrozen();
  till_.CommitTrans();
  for (int i = 0; i < 5; ++i) Sell(till_);
  Thaw();
  ::waitpid(other_, nullptr, 0);
  EXPECT_EQ(Sold(), "6");
}

TEST_F(Waiting, IsDoneForProgramsThatStandInNoLineAndWithoutOne) {
  const sqlite::Handle tool = sqlite::OpenFile(store_.path());
  for (const bool line : {true, false}) {
    if (!line) {
      std::filesystem::remove(store_.path() + "-turnos");
      std::filesystem::create_directory(store_.path() + "-turnos");
    }
    SqliteConnection till(store_.path(), store_.clock());
    sqlite::Run(tool.get(), "BEGIN IMMEDIATE");
    const std::jthread writer([&] {
      std::this_thread::sleep_for(100ms);
      sqlite::Run(tool.get(), "COMMIT");
    });
    Sell(till);
  }
  Other([](SqliteConnection& till) { for (int i = 0; i < 30; ++i) Sell(till); });
  for (int i = 0; i < 30; ++i) Sell(till_);
  ::waitpid(other_, nullptr, 0);
  EXPECT_EQ(Sold(), "62");
}

}  // namespace
}  // namespace tpv
