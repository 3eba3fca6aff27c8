// The till's day where a scenario cannot look: rules without forms, the support
// address, slow mail servers, and tills at work at once on one store.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "cash/closure.h"
#include "debt/collection.h"
#include "cash/mail_queue.h"
#include "host/store_check.h"
#include "tests/test_machine.h"
#include "tests/test_till.h"

namespace tpv {
namespace {

TEST(Collection, PaysTheOldestWhileTheAmountLasts) {
  struct Case {
    std::vector<double> pending;
    double amount;
    std::vector<double> paid;
    std::size_t settled;
  };
  const Case cases[] = {
      {{40, 50, 30}, 100, {40, 50, 10}, 2},
      {{40, 50, 30}, 90, {40, 50}, 2},
      {{40, 50, 30}, 150, {40, 50, 30}, 3},
      {{0.1, 0.2, 0.3}, 0.3, {0.1, 0.2}, 2},
      {{0, 5}, 4.99, {0, 4.99}, 1},
      {{10, -4, 20}, 12, {10, -4, 6}, 2},  // a return pays part of the next
      {{40}, 0, {}, 0},
      {{}, 10, {}, 0},
  };
  for (const Case& rule : cases) {
    std::vector<OpenTicket> tickets;
    for (const double pending : rule.pending) tickets.push_back({0, "", pending});
    std::vector<double> paid;
    std::size_t settled = 0;
    for (const Share& share : ShareOut(tickets, rule.amount)) {
      EXPECT_EQ(share.ticket, paid.size());
      paid.push_back(share.amount);
      settled += share.settled ? 1 : 0;
    }
    EXPECT_EQ(paid, rule.paid) << rule.amount;
    EXPECT_EQ(settled, rule.settled) << rule.amount;
  }
}

TEST(Collection, NoteFitsItsColumn) {
  EXPECT_EQ(CollectionNote(24, " Bar Peña ", {"T/7"}), "Cobro de 24 Bar Peña Venta T/7");
  const std::string hundred = CollectionNote(24, "Bar Peña", std::vector<std::string>(15, "T/4"));
  EXPECT_EQ(hundred.size(), 101u);  // 100 characters, one of them of two bytes
  EXPECT_TRUE(hundred.ends_with(", T/4")) << hundred;
  const std::string cut = CollectionNote(245, "Bar Peña", std::vector<std::string>(15, "T/4"));
  EXPECT_EQ(cut.size(), 101u);
  EXPECT_TRUE(cut.ends_with(", T/4,...")) << cut;
}

class Day : public testing::Test {
 protected:
  TestFolder folder;
  FixedClock clock;
  std::string path = folder / "tienda.db";
};

constexpr const char* kOpenAndChoose =
    "param par_tpvemail null\n"
    "call zTpv\n"
    "enter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 100\nclick cmdGrabar\nanswer Yes\n"
    "click cmdCierre\nenter Text1(11) 1\nclick cmdProceso\nselect ListView1 0\nenter Text1(4) 0\n";

TEST_F(Day, AFailedClosureIsToldToSupport) {
  TestTill till(path, clock);
  till.shop().settings.Write("TPV", "Mail", "Support", " soporte@example.org ");
  ASSERT_EQ(till.Play(std::string(kOpenAndChoose) +
                      "fail sql COMMIT\nclick cmdGrabar\nanswer Yes\nanswer OK\nexpect mails 1\n"
                      "expect screen frmTpvCierreCaja\nmail off\nclick cmdGrabar\nanswer Yes\n"
                      "answer OK\nexpect mails 1\n"),
            "");
  const Mail& mail = till.shop().mailer.mails.at(0);
  EXPECT_EQ(mail.to, "soporte@example.org");
  EXPECT_EQ(mail.port, 25);
  EXPECT_EQ(mail.subject, "Error en poceso de cierre de caja TPV");
  EXPECT_EQ(mail.body, "Detalle del error:\r\nFallo provocado en la sentencia");
}

TEST_F(Day, TheReportTotalsTillsAndDays) {
  TestTill till(path, clock);
  till.store().Execute("DELETE FROM DiaCaj");
  for (const char* closure : {"'01/03/2026 14:00', 2, 10, 100.5, 50, 5, 90", "'01/03/2026 20:00', 1, 0, 1000, 0, 0, 7",
                              "'02/03/2026 14:00', 2, 15.5, 1, 2, 3, 4"}) {
    till.store().Execute("INSERT INTO DiaCaj (DiaCaj_Tipo, DiaCaj_IdAge, DiaCaj_Fecha, DiaCaj_Caja, "
                         "DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret) "
                         "VALUES (9, 1, " + std::string(closure) + ")");
  }
  // Twice: the list is walked from its start each time.
  ASSERT_EQ(till.Play("call zDiarioCaja\nclick cmdInforme\nclick cmdGenerar\nclick cmdGenerar\n"), "");
  ASSERT_EQ(till.shop().reports.reports.size(), 2u);
  const Report& report = till.shop().reports.reports.back();
  using Cells = std::vector<std::string>;
  ASSERT_EQ(report.tables.at(0).rows.size(), 3u);
  EXPECT_EQ(report.tables[0].rows[0].cells, (Cells{"02/03/2026 14:00", "2", "Ana Ruiz", "15,50", "1,00",
                                                   "2,00", "3,00", "4,00", "9,50"}));
  ASSERT_EQ(report.tables.at(1).rows.size(), 3u);
  EXPECT_EQ(report.tables[1].rows[0].cells, (Cells{"1", "1", "1.000,00", "0,00", "0,00", "7,00"}));
  EXPECT_EQ(report.tables[1].rows[1].cells, (Cells{"2", "2", "101,50", "52,00", "8,00", "94,00"}));
  EXPECT_EQ(report.tables[1].rows[2].cells, (Cells{"Total", "3", "1.101,50", "52,00", "8,00", "101,00"}));
  EXPECT_EQ(report.charts.at(0).labels, (Cells{"01/03/26", "02/03/26"}));
  EXPECT_EQ(report.charts[0].values, (std::vector<std::vector<double>>{{1100.5, 1}, {50, 2}}));
}

// The clock that a mail server makes run: each statement after a sending is later.
class RunningClock : public Clock {
 public:
  mutable DateTime now{2026, 11, 24, 10, 0, 0, 0};
  DateTime Now() const override { return now = AddSeconds(now, 5); }
};

TEST_F(Day, ADeadMailServerDoesNotHoldTheTillForTheWholeQueue) {
  TestTill till(path, clock);
  for (int i = 0; i < 9; ++i) {
    till.store().Execute("INSERT INTO QCIERRES (QCIERRES_Email, QCIERRES_Asunto, QCIERRES_Texto) "
                         "VALUES ('jefa@example.org', 'Cierre', 'Texto')");
  }
  RunningClock running;
  Ports& real = till.shop().ports;
  Ports ports{real.ui,     real.printers, real.devices, real.settings, running,
              real.mailer, real.reports,  real.objects, real.sound};
  Context context{0, 0, 0, 0, till.shop().database, ports};
  till.shop().mailer.error = "No responde";
  SendQueuedMails(context);
  EXPECT_EQ(till.shop().mailer.mails.size(), 1u);
  till.shop().mailer.error.clear();
  SendQueuedMails(context);  // one that answers gets them all
  EXPECT_EQ(till.shop().mailer.mails.size(), 10u);
}

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

int FromEnvironment(const char* name, int usual) {
  const char* value = std::getenv(name);
  return value == nullptr ? usual : std::atoi(value);
}

// scripts/torture runs it with more of both.
TEST_F(Day, TillsAtOnceStampAndNumberTheirOwn) {
  const int kTills = FromEnvironment("TPV_TILLS", 2);
  const int kRounds = FromEnvironment("TPV_ROUNDS", 4);
  { const TestTill maker(path, clock); }  // leaves the store
  std::vector<pid_t> children;
  for (int till = 1; till <= kTills; ++till) {
    const pid_t child = ::fork();
    if (child == 0) {
      const StepClock real;
      TestTill own(path, real);
      std::string failure;
      for (int round = 0; round < kRounds && failure.empty(); ++round) {
        failure = own.Play(WorkOf(till, round));
        ::usleep(10000);  // the closure is later than what it closes, to the journal's clock
        CloseTill(own.context(), till);
        ::usleep(10000);
      }
      std::ofstream(folder / std::to_string(till)) << failure;
      ::_exit(failure.empty() ? 0 : 1);
    }
    children.push_back(child);
  }
  for (int till = 1; till <= kTills; ++till) {
    int status = 0;
    ::waitpid(children[till - 1], &status, 0);
    EXPECT_EQ(status, 0) << folder.Text(std::to_string(till));
  }
  TestTill judge(path, clock);
  const auto entries = [&](const char* type) {
    return judge.store()
        .Execute("SELECT COUNT(*) FROM DiaCaj WHERE DiaCaj_Fecha > '24/11/2026 10:30:00' AND "
                 "DiaCaj_Tipo = " + std::string(type))->Field(0).ToInt32();
  };
  EXPECT_EQ(entries("1"), 3 * kTills * kRounds);
  EXPECT_EQ(entries("2"), kTills * kRounds);
  EXPECT_EQ(entries("9"), kTills * kRounds);
  EXPECT_EQ(FindingsText(CheckStore(judge.store())), "");
}

}  // namespace
}  // namespace tpv
