// Tills at work at once on one store, each on its own and under each other's feet.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <random>

#include "cash/closure.h"
#include "cash/opening.h"
#include "data/till_state.h"
#include "host/store_check.h"
#include "tests/fiscal_ground.h"
#include "tests/test_machine.h"
#include "tests/test_till.h"

namespace tpv {
namespace {

// A till that is opened, sells, collects and pays out.
std::string WorkOf(int till, int round) {
  const std::string number = std::to_string(till);
  const std::string ticket = std::to_string(till * 10000 + round);
  std::string script =
      "sql INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Caja, Cav_Agente, Cav_IdCli, Cav_Ticket, "
      "Cav_Situa, Cav_Cobrado) VALUES ('K', " + ticket + ", 1, 1, " + std::to_string(20 + till) +
      ", 1, 1, 0)\n"
      "sql INSERT INTO Lav (Lav_IdCav, Lav_Uni, Lav_Importe, Lav_Tiva) SELECT MAX(Cav_Id), 1, 10, 1 "
      "FROM Cav WHERE Cav_Serie = 'K' AND Cav_Numero = " + ticket + "\n"
      "call zTpv\nenter Text1(6) " + number +
                       "\nenter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 100\n"
                       "click cmdGrabar\nanswer Yes\n";
  for (int sale = 0; sale < 3; ++sale) {
    script += "key Add\ntype 8436210000011\nkey Enter\nkey Subtract\nclick cmdTicket\n"
              "expect screen frmTpv\n";
  }
  return script + "click cmdPagos\nenter Text1(0) 1\nenter Text1(20) " + number +
         "\nenter Text1(2) " + std::to_string(20 + till) +
         "\nclick Check2\nenter Text1(11) 2\nclick cmdTicket\nexpect screen frmTpv\n"
         "click cmdPagos\nenter Text1(0) 1\nenter Text1(20) " + number +
         "\nclick Option1(1)\nenter Text1(3) Bolsas\nenter Text1(6) 1\nclick cmdTicket\n"
         "click cmdSalir\n";
}

// What the closing screen does once its till is chosen.
void CloseTill(Context& context, int till) {
  context.Caja = static_cast<std::int16_t>(till);
  context.IdAgente = 1;
  const auto opening = LastOpening(context, till);
  if (!opening) return;
  const ClosingPeriod period(context, till, opening->when);
  Closure closure;
  closure.mark = period.Mark();
  const PeriodTotals totals = period.Totals();
  closure.initial = opening->initial;
  closure.cash = totals.cash;
  closure.card = totals.card;
  closure.paid = totals.paid;
  const auto collections = period.Collections();
  for (; !collections->Eof(); collections->MoveNext()) {
    closure.collections.push_back(collections->Field("Id").ToInt32());
  }
  StoreClosure(context, period, closure);
}

// Sells through the screens, and opens its till again whenever it finds it closed.
class Cashier : public ui::Driver {
 public:
  Cashier(TestTill& till, int number, int sales) : till_(till), number_(number), sales_(sales) {
    till.shop().front_end.SetDriver(*this);
  }

  bool Step() override {
    if (hands_.Box() != nullptr) {
      hands_.Answer(hands_.Box()->buttons.front());
    } else if (hands_.Top()->name == "frmTpvAperturaCaja") {
      Enter("Text1(14)", "100");
      TryOrLeave("cmdGrabar");
    } else if (hands_.Top()->name == "frmTpv1") {
      TryOrLeave("cmdTicket");
    } else {
      Sell();
    }
    return true;
  }
  void OnBox(const ui::MessageBox&) override {}

 private:
  ui::Control& Control(const char* name) { return *hands_.Top()->Find(name); }
  void Enter(const char* name, const std::string& text) {
    hands_.Focus(Control(name));
    hands_.Clear();
    hands_.Type(text);
    hands_.Press(ui::Key::Tab);
  }
  void TryOrLeave(const char* button) {
    const ui::Form* screen = hands_.Top();
    hands_.Click(Control(button));
    if (!screen->closing) hands_.Press(ui::Key::Esc);
  }
  void Sell() {
    if (std::exchange(begins_, false)) {
      Enter("Text1(6)", std::to_string(number_));
      Enter("Text1(0)", "1");
    }
    if (Control("cmdApertura").IsEnabled()) hands_.Click(Control("cmdApertura"));
    const auto& lines = dynamic_cast<ui::Grid&>(Control("dbgVenta")).rows;
    if (!lines.empty()) {
      hands_.Press(ui::Key::Subtract);
      if (lines.empty()) ++sold_;
    } else if (sold_ == sales_) {
      hands_.Press(ui::Key::Esc);
    } else {
      hands_.Press(ui::Key::Add);
      if (till_.context().IdAlbaran <= 0) return;
      hands_.Type("8436210000011");
      hands_.Press(ui::Key::Enter);
    }
  }

  TestTill& till_;
  scenario::HeadlessOperator hands_{till_.shop().front_end};
  const int number_;
  const int sales_;
  int sold_ = 0;
  bool begins_ = true;
};

// Closes and opens whatever till it comes upon.
void Meddle(TestTill& own, int tills, int times, int seed) {
  std::minstd_rand dice(static_cast<unsigned>(seed));
  const auto roll = [&](int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); };
  own.context().IdAgente = 1;
  for (int i = 0; i < times; ++i) {
    ::usleep(static_cast<useconds_t>(roll(15000)));
    const int till = 1 + roll(tills);
    try {
      if (roll(2) == 0) {
        CloseTill(own.context(), till);
      } else {
        StoreOpening(own.context(), {till, "", 100});
      }
    } catch (const TillRefusal&) {
      // Somebody else was first.
    } catch (const PeriodChanged&) {
      // It sold meanwhile.
    }
  }
}

// Another till works whenever this one begins to store.
class Overtaken : public RecordingConnection {
 public:
  using RecordingConnection::RecordingConnection;
  std::function<void()> meanwhile;

  void BeginTrans() override {
    meanwhile();
    RecordingConnection::BeginTrans();
  }
};

TEST(SaleStart, AsksInsideOfItsTransactionWhetherTheTillIsOpen) {
  const TestFolder folder;
  const StepClock clock;
  const std::string path = folder / "tienda.db";
  auto store = std::make_unique<Overtaken>(OpenStore(path, Contents::Demonstration, clock));
  int begun = 0;
  store->meanwhile = [&] {
    if (++begun == 2) CloseTill(TestTill(path, clock).context(), 2);
  };
  TestTill till(std::move(store), clock);
  const auto tickets = [&] { return till.store().Execute("SELECT COUNT(*) FROM Cav")->Field(0).ToInt32(); };
  const int before = tickets();
  EXPECT_EQ(till.Play("set Caja 2\ncall zTpv\nenter Text1(6) 2\nenter Text1(0) 2\nclick cmdApertura\n"
                      "enter Text1(14) 100\nclick cmdGrabar\nanswer Yes\nexpect enabled cmdCierre True\nkey Add\n"
                      "answer OK \"Caja cerrada, debe aperturarla para poder trabajar\"\n"
                      "expect enabled cmdCierre False\nexpect screen frmTpv"), "");
  EXPECT_EQ(tickets(), before);
}

int FromEnvironment(const char* name, int usual) {
  const char* value = std::getenv(name);
  return value == nullptr ? usual : std::atoi(value);
}

// scripts/torture runs them with more of both.
class TillsAtOnce : public testing::Test {
 protected:
  // Each till types its own number; one of all would offer each the other's live sale.
  TillsAtOnce() { TestTill(path_, real_).store().Execute("UPDATE Parametros SET Par_NumCaja = NULL"); }

  const TestFolder folder_;
  const StepClock real_;
  const std::string path_ = folder_ / "tienda.db";
  const int kTills = FromEnvironment("TPV_TILLS", 2);
  const int kRounds = FromEnvironment("TPV_ROUNDS", 4);

  // In a process of its own; what it returns or throws is its failure.
  void Fork(const std::function<std::string()>& work) {
    const std::string name = std::to_string(children_.size());
    const pid_t child = ::fork();
    if (child != 0) return children_.push_back(child);
    std::string failure;
    try {
      failure = work();
    } catch (const std::exception& error) {
      failure = error.what();
    }
    std::ofstream(folder_ / name) << failure;
    ::_exit(failure.empty() ? 0 : 1);
  }
  void Start(const std::function<std::string(TestTill&)>& work) {
    Fork([&] {
      TestTill own(path_, real_);
      return work(own);
    });
  }
  bool MakeRecords() { return tpv::MakeRecords(TestTill(path_, real_).store()); }
  void Wait() {
    for (std::size_t i = 0; i < children_.size(); ++i) {
      int status = 0;
      ::waitpid(children_[i], &status, 0);
      EXPECT_EQ(status, 0) << folder_.Text(std::to_string(i));
    }
    EXPECT_EQ(FindingsText(CheckStore(judge().store())), "");
  }
  TestTill& judge() {
    if (!judge_) judge_.emplace(path_, real_);
    return *judge_;
  }
  // Entries since the demonstration's days.
  int Entries(const std::string& type) {
    return judge().store()
        .Execute("SELECT COUNT(*) FROM DiaCaj WHERE DiaCaj_Id > " + std::to_string(demonstrated_) +
                 " AND DiaCaj_Tipo = " + type)->Field(0).ToInt32();
  }

 private:
  const std::int32_t demonstrated_ = TestTill(path_, real_).store()
      .Execute("SELECT MAX(DiaCaj_Id) FROM DiaCaj")->Field(0).ToInt32();
  std::vector<pid_t> children_;
  std::optional<TestTill> judge_;
};

TEST_F(TillsAtOnce, ComeAndGo) {
  for (int till = 1; till <= kTills; ++till) {
    Fork([this] {
      for (int visit = 0; visit < 40 * kRounds; ++visit) OpenStore(path_, Contents::Demonstration, real_);
      return std::string();
    });
  }
  Wait();
}

TEST_F(TillsAtOnce, StampAndNumberTheirOwn) {
  for (int till = 1; till <= kTills; ++till) {
    Start([this, till](TestTill& own) {
      std::string failure;
      for (int round = 0; round < kRounds && failure.empty(); ++round) {
        failure = own.Play(WorkOf(till, round));
        if (failure.empty()) CloseTill(own.context(), till);
      }
      return failure;
    });
  }
  Wait();
  EXPECT_EQ(Entries("1"), 3 * kTills * kRounds);
  EXPECT_EQ(Entries("2"), kTills * kRounds);
  EXPECT_EQ(Entries("9"), kTills * kRounds);
}

TEST_F(TillsAtOnce, CloseAndOpenUnderEachOthersFeet) {
  const int sales = 3 * kRounds;
  const bool recorded = MakeRecords();  // one chain, whose check is part of the store's
  for (int till = 1; till <= kTills; ++till) {
    Start([=](TestTill& own) {
      Cashier cashier(own, till, sales);
      own.component().zTpv();
      return std::string();
    });
    Start([=, this](TestTill& own) {
      Meddle(own, kTills, 10 * kRounds, till);
      return std::string();
    });
  }
  Wait();
  EXPECT_EQ(Entries("1"), kTills * sales);
  EXPECT_EQ(judge().store().Execute("SELECT COUNT(*) FROM Fiscal")->Field(0).ToInt32(), recorded ? kTills * sales : 0);
  EXPECT_GT(Entries("9"), 1);
}

}  // namespace
}  // namespace tpv
