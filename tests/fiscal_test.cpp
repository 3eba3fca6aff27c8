// Invoice records below the screens: fingerprints, moments, the chain.
#include <gtest/gtest.h>

#include <cstdlib>

#include "adapters/headless/recorders.h"
#include "fiscal/amounts.h"
#include "fiscal/fingerprint.h"
#include "fiscal/mending.h"
#include "fiscal/moment.h"
#include "fiscal/records.h"
#include "host/fiscal_check.h"
#include "host/store.h"
#include "tests/fiscal_ground.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"
#include "tests/test_till.h"

namespace tpv::fiscal {
namespace {

// The agency's own examples, each chained to the one before.
TEST(Fingerprint, IsTheAgencys) {
  const auto digest = MakeDigest();
  if (digest == nullptr) GTEST_SKIP() << "built without libcrypto";
  Record record;
  record.kind = Kind::Invoice;
  record.issuer = "89890001K";
  record.tax = 1235;
  record.total = 12345;
  const struct {
    Kind kind;
    const char *number, *moment, *fingerprint;
  } examples[] = {
      {Kind::Invoice, "12345678/G33", "2024-01-01T19:20:30+01:00",
       "3C464DAF61ACB827C65FDA19F352A4E3BDC2C640E9E9FC4CC058073F38F12F60"},
      {Kind::Invoice, "12345679/G34", "2024-01-01T19:20:35+01:00",
       "F7B94CFD8924EDFF273501B01EE5153E4CE8F259766F88CF6ACB8935802A2B97"},
      {Kind::Cancellation, "12345679/G34", "2024-01-01T19:20:40+01:00",
       "177547C0D57AC74748561D054A9CEC14B4C4EA23D1BEFD6F2E69E3A388F90C68"},
  };
  for (const auto& example : examples) {
    record.kind = example.kind;
    record.document = {example.number, {2024, 1, 1}};
    record.moment = example.moment;
    Fingerprint(record, *digest);
    EXPECT_EQ(record.fingerprint, example.fingerprint) << record.text;
    record.previous = PreviousRecord{0, record.issuer, record.document, record.fingerprint};
  }
}

TEST(Moment, HasTheRightOffsetOnBothSidesOfAClockChange) {
  const struct {
    Zone zone;
    const char *utc, *moment;
  } examples[] = {
      {Zone::Madrid, "2026-03-29 00:59:59", "2026-03-29T01:59:59+01:00"},
      {Zone::Madrid, "2026-03-29 01:00:00", "2026-03-29T03:00:00+02:00"},
      {Zone::Madrid, "2026-10-25 00:59:59", "2026-10-25T02:59:59+02:00"},
      {Zone::Madrid, "2026-10-25 01:00:00", "2026-10-25T02:00:00+01:00"},
      {Zone::Madrid, "2026-12-31 23:30:00", "2027-01-01T00:30:00+01:00"},
      {Zone::Canaries, "2026-03-29 00:59:59", "2026-03-29T00:59:59+00:00"},
      {Zone::Canaries, "2026-03-29 01:00:00", "2026-03-29T02:00:00+01:00"},
      {Zone::Canaries, "2026-10-25 01:30:00", "2026-10-25T01:30:00+00:00"},
      {Zone::Canaries, "2026-10-25 02:30:00", "2026-10-25T02:30:00+00:00"},
  };
  for (const auto& example : examples) {
    const DateTime utc = ParseIso(example.utc).value();
    EXPECT_EQ(MomentText(example.zone, utc), example.moment);
    EXPECT_EQ(MomentUtc(example.moment), utc);
    const DateTime wall = ParseIso(std::string(example.moment).replace(10, 1, " ").substr(0, 19)).value();
    const std::string again = MomentText(example.zone, UtcOfWall(example.zone, wall));
    EXPECT_EQ(again.substr(0, 19), std::string(example.moment).substr(0, 19));  // of two hours, the first
  }
  for (const char* other : {"", "2026-11-24T10:30:00", "2026-11-24T10:30:00+03:00", "2026-11-24T10:30:00-01:00"}) {
    EXPECT_EQ(MomentUtc(other), std::nullopt) << other;
  }
}

TEST(Amounts, OfARateAreItsTotalToTheCent) {
  for (const auto& [rate, surcharge] : {std::pair{21.0, 0.0}, {21.0, 5.2}, {10.0, 1.4}, {4.0, 0.5}, {0.0, 0.0}}) {
    for (Cents total = -2500; total <= 2500; total += 7) {
      const RateAmounts amounts = Divided(rate, surcharge, total);
      EXPECT_EQ(amounts.Total(), total);
      const double base = static_cast<double>(amounts.base);
      EXPECT_LE(std::abs(static_cast<double>(amounts.tax) - base / 100 * rate), 1.5) << rate << " " << total;
      EXPECT_LE(std::abs(static_cast<double>(amounts.surcharge_tax) - base / 100 * surcharge), 0.51);
    }
  }
}

// A store made before there were records has none of their tables.
TEST(Off, ATillAsksNothingAboutRecords) {
  const TestFolder folder;
  StepClock clock;
  clock.fixed = DateTime{2026, 11, 24, 10, 30};
  TestTill till(folder / "tienda.db", clock);
  EXPECT_EQ(till.Play("param Par_SerTicFac FT\nset Caja 2\ncall zTpv\nenter Text1(6) 2\nenter Text1(0) 2\n"
                      "click cmdApertura\nenter Text1(14) 100\nclick cmdGrabar\nanswer Yes\n"
                      "key Add\ntype 0121\nkey Enter\nkey Subtract\nclick cmdTicket\n"
                      "key Add\ntype 0121\nkey Enter\nkey Subtract\nclick cmdFinalizar\n"
                      "key Add\ntype 0121\nkey Enter\nkey Subtract\nenter Text1(2) 24\nselect cboFpago 04\n"
                      "click cmdFactura\nclick cmdFacturar\nclick cmdReImprimir\n"
                      "click cmdDevoluciones\nclick cmdNueva\nenter Text1(21) -1\nenter Text1(19) 0121\n"
                      "click cmdSalir\nexpect screen frmTpv\nclose\n"
                      "call zDiario\nenter Text1(5) 24/11/2026\nenter Text1(2) 24/11/2026\nclick cmdInforme\n"
                      "cellbutton DbgDiario 0 2\nmenu mnu03\nanswer Yes\nanswer Yes\nclose\n"
                      "call zFacturacion\nenter Text1(5) 24/11/2026\nenter Text1(2) 24/11/2026\nclick cmdInforme\n"
                      "click cmdFacturar\nclick cmdFacturar\nexpect screen none\n"), "");
  EXPECT_GT(till.connection().sent.size(), 100U);
  for (const std::string& statement : till.connection().sent) {
    for (const char* of_records : {" Fiscal", "Fis_", "Fir_", "Fit_", "Par_Fis"}) {
      EXPECT_EQ(statement.find(of_records), std::string::npos) << statement;
    }
  }
}

// Tickets 1 to 5 of series K, one of them a return, all registered.
class Chain : public testing::Test {
 protected:
  Chain() : store(OpenStore(folder / "tienda.db", Contents::Demonstration, clock)) {
    able = MakeRecords(*store);
    for (int number = 1; able && number <= 5; ++number) Sell(number, number == 4 ? -10 : 10 * number);
  }
  void SetUp() override {
    if (!able) GTEST_SKIP() << "built without libcrypto";
  }
  Desk desk() { return DeskOf(*store, digest.get()); }
  void Sell(int number, int euros) {
    store->Execute("INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Caja, Cav_Agente, Cav_IdCli, Cav_Ticket, Cav_Situa, "
                   "Cav_Cobrado) VALUES ('K', " + std::to_string(number) + ", 1, 1, 1, 1, 1, 0)");
    ticket = store->Execute("SELECT MAX(Cav_Id) FROM Cav")->Field(0).ToInt32();
    store->Execute("INSERT INTO Lav (Lav_IdCav, Lav_Uni, Lav_Importe, Lav_Tiva) VALUES (" + std::to_string(ticket) +
                   ", 1, " + std::to_string(euros) + ", 1)");
    Transaction transaction(*store);
    RecordTicket(desk(), ticket);
    transaction.Commit();
    clock.Step();
  }
  std::string Refusal(const std::function<void()>& work) {
    try {
      work();
      return "";
    } catch (const DatabaseError& refused) {
      return refused.what();
    }
  }

  TestFolder folder;
  StepClock clock{DateTime{2026, 11, 24, 10, 30}};  // of the store too
  std::unique_ptr<Connection> store;
  const std::unique_ptr<Digest> digest = MakeDigest();
  bool able = false;
  std::int32_t ticket = 0;  // the last one
};

TEST_F(Chain, NamesWhatIsChangedMissingOrExchanged) {
  EXPECT_EQ(FindingsText(CheckStore(*store)), "");
  EXPECT_EQ(CheckFiscal(*store).records, 5);
  const std::string rule = "ROTO  Registros de facturación ";
  const std::string last = std::to_string(ticket);
  const struct {
    std::vector<std::string> harm;
    std::string found;
  } cases[] = {
      {{"UPDATE Fiscal SET Fis_Numero = 'K/9' WHERE Fis_Id = 3"}, rule + "cambiados: 1 (3)"},
      {{"UPDATE Fiscal SET Fis_Fecha = '23/11/2026' WHERE Fis_Id = 5"}, rule + "cambiados: 1 (5)"},
      {{"UPDATE Fiscal SET Fis_Huella = '00' WHERE Fis_Id = 2"}, rule + "cambiados: 1 (2)"},
      {{"UPDATE Fiscal SET Fis_Desglose = '21 0 1.00 0.21 0.00' WHERE Fis_Id = 2"}, rule + "cuyos tipos"},
      {{"UPDATE Fiscal SET Fis_Desglose = 'x' WHERE Fis_Id = 2"}, rule + "cambiados: 1 (2)"},
      {{"DELETE FROM Fiscal WHERE Fis_Id = 3"}, rule + "que faltan: 1 (3)"},
      {{"DELETE FROM Fiscal WHERE Fis_Id = 5"}, "ROTO  Tickets sin registro de facturación (se nombra su número "
                                                "interno): 1 (" + last + ")"},
      {{"INSERT INTO FiscalRespuestas (Fir_IdFis, Fir_Estado) VALUES (5, 1)", "DELETE FROM Fiscal WHERE Fis_Id = 5"},
       rule + "que faltan: 1 (5)"},
      {{"UPDATE Fiscal SET Fis_Id = 99 WHERE Fis_Id = 2", "UPDATE Fiscal SET Fis_Id = 2 WHERE Fis_Id = 3",
        "UPDATE Fiscal SET Fis_Id = 3 WHERE Fis_Id = 99"}, rule + "que no siguen al anterior de su cadena: 3 (2, 3, 4)"},
      {{"UPDATE Lav SET Lav_Importe = 51 WHERE Lav_IdCav = " + last}, rule + "cuyo ticket falta o dice otra cosa: 1 (5)"},
      {{"DELETE FROM Lav WHERE Lav_IdCav = " + last, "DELETE FROM Cav WHERE Cav_Id = " + last},
       rule + "cuyo ticket falta o dice otra cosa: 1 (5)"},
  };
  for (const auto& example : cases) {
    const Transaction undone(*store);
    for (const std::string& statement : example.harm) store->Execute(statement);
    const std::string found = FindingsText(CheckStore(*store));
    EXPECT_NE(found.find(example.found), std::string::npos) << example.harm[0] << "\n" << found;
  }
}

TEST_F(Chain, GoesOnAfterASmallStepBackOfTheClockAndNotAfterALargeOne) {
  clock.fixed = AddSeconds(*clock.fixed, -50);
  Sell(6, 10);
  const auto records = RecordsFrom(*store, 5, 2);
  EXPECT_EQ(records[0].moment, records[1].moment);
  clock.fixed = AddSeconds(*clock.fixed, -60);
  EXPECT_THROW(Sell(7, 10), RecordRefused);
  // Winter time begins: the wall's clock goes back and the record's time does not.
  clock.fixed = DateTime{2027, 10, 31, 1, 59, 59};
  Sell(8, 10);
  EXPECT_EQ(RecordOfTicket(*store, ticket)->moment, "2027-10-31T01:59:59+02:00");
}

TEST_F(Chain, RefusesWhatTheAgencyWouldNotTake) {
  EXPECT_THROW(Sell(10, 3000), RecordRefused);  // 3,630.00 with tax
  store->Execute("UPDATE Parametros SET Par_SerTic = 'Ñ'");
  store->Execute("UPDATE Parametros SET Par_FisZona = 'Azores', Par_Nombre = NULL");
  EXPECT_EQ(Refusal([&] { TurnOn(desk(), Mode::Real, {"el certificado"}); }),
            "No se pueden encender los registros de facturación. Falta:\n  el nombre de la tienda (Par_Nombre)\n"
            "  la zona horaria: madrid o canarias\n  una serie de tickets sin letras con acento ni los signos \" ' < > = "
            "(Par_SerTic)\n  el certificado");
  store->Execute("UPDATE Cav SET Cav_Serie = 'Ñ' WHERE Cav_Id = " + std::to_string(ticket));
  store->Execute("UPDATE Lav SET Lav_Importe = 10 WHERE Lav_IdCav = " + std::to_string(ticket));
  EXPECT_NE(Refusal([&] { RecordTicket(desk(), ticket); }).find("le falta su nombre"), std::string::npos);
  store->Execute("UPDATE Parametros SET Par_Nombre = 'La Esquina'");
  EXPECT_NE(Refusal([&] { RecordTicket(desk(), ticket); }).find("«Ñ/10»"), std::string::npos);
  store->Execute("UPDATE Cav SET Cav_Serie = 'K', Cav_Numero = 1 WHERE Cav_Id = " + std::to_string(ticket));
  EXPECT_NE(Refusal([&] { RecordTicket(desk(), ticket); }).find("«K/1» ya está registrado"), std::string::npos);
}

TEST_F(Chain, BeginsAnewForTheRealAgencyAndThenStaysOn) {
  TurnOff(desk());
  TurnOn(desk(), Mode::Trial, {});
  TurnOn(desk(), Mode::Real, {});
  Sell(6, 10);
  Sell(7, 10);
  const auto records = RecordsFrom(*store, 6, 2);
  EXPECT_FALSE(records[0].previous.has_value());
  EXPECT_EQ(records[1].previous->fingerprint, records[0].fingerprint);
  EXPECT_THROW(TurnOff(desk()), DatabaseError);
  EXPECT_THROW(TurnOn(desk(), Mode::Trial, {}), DatabaseError);
  EXPECT_EQ(NextToSend(*store, 1000).size(), 5U);  // those of the trial's agency
  EXPECT_EQ(FindingsText(CheckStore(*store)), "");
}

// The shop has another tax number since: the agency knows a document by the one it was issued under.
TEST_F(Chain, CancelsAndMendsInTheNameOfTheIssuer) {
  const std::int32_t older = ticket;
  store->Execute("UPDATE Parametros SET Par_Doc = 'B99999997', Par_Nombre = 'La Esquina, S.L.'");
  Sell(6, 10);
  Transaction transaction(*store);
  RecordDeletion(desk(), older);
  for (const char* rows : {"Lav WHERE Lav_IdCav = ", "Cav WHERE Cav_Id = "}) {
    store->Execute("DELETE FROM " + (rows + std::to_string(older)));
  }
  transaction.Commit();
  const auto records = RecordsFrom(*store, 5, 3);
  EXPECT_FALSE(records[1].previous.has_value());
  EXPECT_EQ(records[2].issuer_name, records[0].issuer_name);
  EXPECT_EQ(records[2].text.find("IDEmisorFacturaAnulada=" + records[0].issuer + "&NumSerieFacturaAnulada=K/5&"), 0U);
  EXPECT_EQ(records[2].previous->fingerprint, records[0].fingerprint);

  for (const State state : {State::Rejected, State::AcceptedWithErrors, State::Accepted, State::Accepted,
                            State::Accepted, State::Accepted, State::Rejected}) {
    StoreReply(*store, NextToSend(*store, 1).at(0).position, {state, 1105, "NIF", "", false});
  }
  for (const std::int32_t position : {1, 2, 7}) Mend(desk(), position, {});
  const auto mended = RecordsFrom(*store, 8, 3);
  EXPECT_TRUE(mended[0].issuer == "B99999997" && mended[0].refused == Refused::AndNeverHeld);
  EXPECT_TRUE(mended[1].issuer == records[0].issuer && mended[1].refused == Refused::No);
  EXPECT_TRUE(mended[2].issuer == records[0].issuer && mended[2].refused == Refused::Before);
  EXPECT_EQ(FindingsText(CheckStore(*store)), "");
}

TEST_F(Chain, IsMendedByANewRecord) {
  const auto reply = [&](std::int32_t position, State state) { StoreReply(*store, position, {state, 1105, "NIF", "", false}); };
  EXPECT_THROW(reply(2, State::Accepted), DatabaseError);  // the first one waits
  reply(1, State::Rejected);
  reply(2, State::AcceptedWithErrors);
  reply(3, State::Accepted);
  EXPECT_EQ(CountWaiting(*store).count, 2);
  const auto to_mend = RecordsToMend(*store);
  ASSERT_EQ(to_mend.size(), 2U);
  EXPECT_TRUE(to_mend[0].position == 1 && to_mend[1].position == 2);
  Mend(desk(), 1, {});
  Mend(desk(), 2, {});
  EXPECT_TRUE(RecordsToMend(*store).empty());
  for (const std::int32_t other : {1, 3, 99}) EXPECT_THROW(Mend(desk(), other, {}), RecordRefused);
  const auto mended = RecordsFrom(*store, 6, 2);
  EXPECT_TRUE(mended[0].mends && mended[0].refused == Refused::AndNeverHeld && mended[0].document.number == "K/1");
  EXPECT_TRUE(mended[1].mends && mended[1].refused == Refused::No);
  // The agency holds another record of the number.
  StoreReply(*store, 4, {State::Rejected, 3000, "Duplicado", "", true});
  Mend(desk(), 4, {});
  EXPECT_EQ(RecordsFrom(*store, 8, 1).at(0).refused, Refused::Before);
  EXPECT_EQ(FindingsText(CheckStore(*store)), "");
}

}  // namespace
}  // namespace tpv::fiscal
