// The till's day where a scenario cannot look: rules without forms, the support
// address, slow mail servers.
#include <gtest/gtest.h>

#include <vector>

#include "base/text.h"
#include "debt/collection.h"
#include "cash/difference_search.h"
#include "cash/mail_queue.h"
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

// What explains a difference of so many cents, the proposal that something is not booked aside.
std::string Explained(std::int64_t difference, const DrawerEntry& entry, std::int64_t initial = 0) {
  std::string reasons;
  for (const Proposal& proposal : ExplainDifference(difference, initial, {entry})) {
    if (!proposal.what.empty()) reasons += proposal.what + ": " + proposal.reason + "\n";
  }
  return reasons;
}

TEST(DrawerDifference, EachKindOfMistakeIsProposedAndNoOther) {
  const DrawerEntry sale{"C", false, 2000, 800, 0};  // 12,00 in cash, change of 20,00
  const DrawerEntry card{"C", false, 0, 0, 3000};
  const DrawerEntry back{"C", false, -500, 0, 0};
  const DrawerEntry paid{"P", true, 5400, 0, 0};
  const std::tuple<std::int64_t, DrawerEntry, std::int64_t, const char*> cases[] = {
      {-1200, sale, 0, "C: Un cobro de ese importe: ¿se pagó con tarjeta y se apuntó en metálico?\n"},
      {1200, sale, 0, "C: Un cobro de ese importe: ¿entró el dinero dos veces?\n"},
      {-2400, sale, 0, "C: La mitad de la diferencia: ¿se devolvió y se apuntó como cobro?\n"},
      {900, sale, 0, "C: Dos cifras cambiadas de sitio: 12,00 por 21,00\n"},
      {-3000, sale, 0, "C: Entregado 20,00: ¿se dio el cambio de 50,00?\n"},
      {3000, card, 0, "C: Un cobro con tarjeta de ese importe: ¿se pagó en metálico?\n"},
      {-3000, card, 0, ""},
      {1000, back, 0, "C: La mitad de la diferencia: ¿se cobró y se apuntó como devolución?\n"},
      {-5400, paid, 0, "P: Un pago de ese importe: ¿se pagó dos veces?\n"},
      {5400, paid, 0, "P: Un pago de ese importe: ¿se apuntó y no salió del cajón?\n"},
      {10800, paid, 0, "P: La mitad de la diferencia: ¿era un cobro y se apuntó como pago?\n"},
      {900, paid, 0, "P: Dos cifras cambiadas de sitio: 54,00 por 45,00\n"},
      {-1800, card, 8600, "Saldo inicial: Dos cifras cambiadas de sitio: 86,00 por 68,00\n"},
      {-700, sale, 0, ""},
  };
  for (const auto& [difference, entry, initial, reasons] : cases) {
    EXPECT_EQ(Explained(difference, entry, initial), reasons) << difference;
  }
  EXPECT_EQ(ExplainDifference(-700, 0, {}).at(0).reason, "Un pago de 7,00 sin apuntar en movimientos de caja");
  EXPECT_EQ(ExplainDifference(700, 0, {}).at(0).reason, "Un cobro de 7,00 sin apuntar, o cambio que no se dio");
}

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
  // A mail that fails hides nothing.
  till.shop().mailer.on_mail = [](const Mail&) { throw std::runtime_error("sin red"); };
  EXPECT_EQ(till.Play("mail on\nfail nothing\ncall zAperturaCierre\nenter Text1(11) 1\n"
                      "click cmdProceso\nselect ListView1 0\nenter Text1(4) 0\nfail sql COMMIT\n"
                      "click cmdGrabar\nanswer Yes\n"
                      "answer OK \"Error procesando cierre de caja\\nFallo provocado en la sentencia\"\n"
                      "expect screen frmTpvCierreCaja\n"),
            "");
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

// A network printer that hangs holds its own till alone: while a drawer or a ticket is
// waited for, another sells.
TEST_F(Day, ADeviceThatHangsStopsNoOtherTill) {
  constexpr const char* kOpen =
      "call zTpv\nenter Text1(6) %\nenter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 100\n"
      "click cmdGrabar\nanswer Yes\n";
  constexpr const char* kSold = "key Add\ntype 0121\nkey Enter\nkey Subtract\nclick cmdTicket\n";
  TestTill other(path, clock);
  int sold_meanwhile = 0;
  const auto sell = [&] {
    ++sold_meanwhile;
    EXPECT_EQ(other.Play(ReplaceAll(kOpen, "%", std::to_string(1 + sold_meanwhile)) + kSold), "");
  };
  TestTill till(path, clock);
  till.store().Execute("UPDATE Parametros SET Par_PCajon = 4, Par_SCajon = '27,112'");
  other.shop().settings.Write("TPV", "Till", "DrawerMethod", "0");
  till.shop().devices.on_write = [&](const std::string&, const std::string&) { sell(); };
  till.shop().printers.on_document = [&](const PrintedDocument&) { sell(); };
  EXPECT_EQ(till.Play(ReplaceAll(kOpen, "%", "1") + kSold), "");
  EXPECT_EQ(sold_meanwhile, 2);
}

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

TEST_F(Day, TwoTillsSendAQueuedMailOnce) {
  TestTill till(path, clock);
  TestTill other(path, clock);
  till.store().Execute("INSERT INTO QCIERRES (QCIERRES_Email, QCIERRES_Asunto, QCIERRES_Texto) "
                       "VALUES ('jefa@example.org', 'Cierre', 'Texto')");
  till.shop().mailer.on_mail = [&](const Mail&) { SendQueuedMails(other.context()); };
  SendQueuedMails(till.context());
  SendQueuedMails(other.context());
  EXPECT_EQ(till.shop().mailer.mails.size(), 1u);
  EXPECT_EQ(other.shop().mailer.mails.size(), 0u);
  // One that died while it sent leaves the mail to the others, not for ever.
  till.store().Execute("UPDATE QCIERRES SET QCIERRES_Enviado = NULL");
  till.store().Execute("INSERT INTO QCIERRESEnvio (Qen_Id, Qen_Desde) VALUES (1, '24/11/2026 10:26:00')");
  SendQueuedMails(other.context());
  EXPECT_EQ(other.shop().mailer.mails.size(), 0u);
  clock.now = AddSeconds(clock.now, 120);
  SendQueuedMails(other.context());
  EXPECT_EQ(other.shop().mailer.mails.size(), 1u);
  const auto left = till.store().Execute("SELECT COUNT(*) FROM QCIERRESEnvio");
  EXPECT_EQ(left->Field(0).ToInt32(), 0);
}

}  // namespace
}  // namespace tpv
