// Messages to the tax agency over TLS, and what comes of its answers.
#include <sys/wait.h>

#include <atomic>
#include <csignal>
#include <set>
#include <sstream>
#include <thread>

#include "adapters/fiscal/answer_reader.h"
#include "adapters/fiscal/client_certificate.h"
#include "adapters/fiscal/tax_agency.h"
#include "data/insert_row.h"
#include "fiscal/fingerprint.h"
#include "fiscal/record_columns.h"
#include "fiscal/records.h"
#include "fiscal/sending.h"
#include "fiscal/sending_turn.h"
#include "fiscal/validation_code.h"
#include "host/fiscal_check.h"
#include "host/fiscal_commands.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/store.h"
#include "host/store_errands.h"
#include "screen/waiting_items.h"
#include "tests/agency_fixture.h"
#include "tests/read_code.h"
#include "tests/test_shop.h"

namespace tpv::fiscal {
namespace {

// Whoever answers, and whatever the settings say.
TEST(Agency, RealRecordsGoToItAloneAndNothingElseIsTakenForItsAnswer) {
  AgencySettings settings;
  settings.test_server = "https://otro.es";
  EXPECT_EQ(AgencyUrl(settings, false).find("https://otro.es/wlpl/"), 0U);
  EXPECT_EQ(AgencyUrl(settings, true).find("https://www1.agenciatributaria.gob.es/wlpl/"), 0U);
  settings.seal = true;
  EXPECT_EQ(AgencyUrl(settings, true).find("https://www10.agenciatributaria.gob.es/wlpl/"), 0U);
  settings.test_server.clear();
  EXPECT_EQ(AgencyUrl(settings, false).find("https://prewww10.aeat.es/wlpl/"), 0U);
  const std::string line = "<RespuestaRegFactuSistemaFacturacion><RespuestaLinea><EstadoRegistro>Quizá</EstadoRegistro>"
                           "</RespuestaLinea></RespuestaRegFactuSistemaFacturacion>";
  const std::string bomb = "<!DOCTYPE a [<!ENTITY b \"bbbb\"><!ENTITY c \"&b;&b;\">]><a>&c;</a>";
  for (const std::string& other : {std::string(), std::string("Hola"), std::string("<a/>"), line, bomb}) {
    EXPECT_THROW(ReadAnswer(other), NoAnswer) << other;
  }
}

// A shop with a chain of records, and tills that send it.
class Sending : public AgencyFixture {
 protected:
  TestStore store;
  std::atomic<bool> stop = false;
  TaxAgency agency{settings, [this] { return stop.load(); }};

  void SetUp() override {
    if (!MakeCertificates()) GTEST_SKIP() << "no openssl program";
    StartAgency();
  }

  Record Chained(Kind kind, const std::string& number) {
    Record record;
    record.kind = kind;
    record.issuer = "89890001K";
    record.issuer_name = "Peña & <Hijas> S.L.";
    record.document = {number, {2026, 11, 24}};
    record.moment = "2026-11-24T10:30:00+01:00";
    record.producer = {"Casa de Programas", "B12345674", "1.0.0", "1"};
    if (kind != Kind::Cancellation) {
      record.rates = {{21, 5.2, 1000, 210, 52}, {10, 0, -100, -10, 0}};
      record.tax = 252;
      record.total = 1152;
    }
    if (NamesBuyer(kind)) {
      record.buyer_name = "Ana Núñez";
      record.buyer_document = "12345678Z";
    }
    if (kind == Kind::Return || kind == Kind::InvoiceOfTickets) record.related = {{"T/1", {2026, 11, 23}}};
    return record;
  }
  void Add(Record record) {
    const std::vector<Record> last = RecordsFrom(store.connection(), last_, 1);
    if (last_ > 0) record.previous = PreviousRecord{last_, last[0].issuer, last[0].document, last[0].fingerprint};
    Fingerprint(record, *MakeDigest());
    sql::InsertRow(store.connection(), "Fiscal",
                   "Fis_Id, Fis_Modo, Fis_Tipo, Fis_Subsana, Fis_Rechazo, Fis_Emisor, Fis_Nombre, Fis_Numero, "
                   "Fis_Fecha, Fis_CliNombre, Fis_CliDoc, Fis_Desglose, Fis_Relacion, Fis_Cuota, Fis_Total, "
                   "Fis_Momento, Fis_Anterior, Fis_Texto, Fis_Huella, Fis_Productor, Fis_ProdDoc, Fis_Version, "
                   "Fis_Instalacion",
                   {++last_, static_cast<int>(record.mode), std::string(CodeOf(record.kind)), record.mends,
                    std::string(1, static_cast<char>(record.refused)), record.issuer, record.issuer_name,
                    record.document.number, record.document.date, record.buyer_name, record.buyer_document,
                    RatesColumn(record.rates), RelatedColumn(record.related),
                    static_cast<double>(record.tax) / 100, static_cast<double>(record.total) / 100, record.moment, record.previous ? record.previous->position : 0,
                    record.text, record.fingerprint, record.producer.name, record.producer.document,
                    record.producer.version, record.producer.installation});
  }
  void AddTickets(int count) {
    for (int i = 0; i < count; ++i) Add(Chained(Kind::Ticket, "T/" + std::to_string(last_ + 1)));
  }
  std::string Send(When when = When::InTurn, const std::string& till = "1") {
    return Told(SendWaiting(store.connection(), agency, till, when));
  }
  // States of the records in order, as digits: 0 waits, 3 rejected.
  std::string States() {
    std::string states;
    for (const Record& record : RecordsFrom(store.connection(), 1, 5000)) {
      states += std::to_string(static_cast<int>(record.reply.state));
    }
    return states;
  }
  void Pass(int seconds) { store.clock().now = AddSeconds(store.clock().now, seconds); }

 private:
  std::int32_t last_ = 0;
};

TEST_F(Sending, TakesEveryKindOfRecordAndKeepsEachAnswer) {
  EXPECT_EQ(Send(), "No hay registros que enviar");
  AddTickets(1);
  for (const Kind kind : {Kind::Invoice, Kind::InvoiceOfTickets, Kind::Return, Kind::InvoiceOfReturn}) {
    Add(Chained(kind, "F/" + std::to_string(static_cast<int>(kind))));
  }
  Add(Chained(Kind::Cancellation, "T/1"));
  EXPECT_EQ(Send(), "Registros enviados: 6. Aceptados: 6");
  EXPECT_EQ(Log(), "6 ok: Correcto\n");

  AddTickets(3);
  Order("reject 2 El NIF no está identificado\nerrors 1\n");
  EXPECT_EQ(Send(), "Registros enviados: 3. Aceptados: 2, rechazados: 1");
  const std::vector<Record> rejected = RecordsToMend(store.connection());
  ASSERT_EQ(rejected.size(), 1U);
  EXPECT_EQ(rejected[0].reply.code, 1100);
  EXPECT_EQ(rejected[0].reply.text, "El NIF no está identificado");

  Record mended = Chained(Kind::Ticket, rejected[0].document.number);
  mended.mends = true;
  mended.refused = Refused::AndNeverHeld;
  Add(mended);
  EXPECT_EQ(Send(), "Registros enviados: 1. Aceptados: 0, aceptados con errores: 1");
  EXPECT_EQ(States(), "1111111312");
  EXPECT_EQ(Log(), "3 reject: Correcto Incorrecto\n1 errors: AceptadoConErrores\n");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM FiscalRespuestas WHERE Fir_Csv = 'A-1234'"), "10");
}

TEST_F(Sending, ALostAnswerNeverMakesTwoOfARecord) {
  AddTickets(3);
  Order("lose\n");
  EXPECT_NE(Send().find("Se ha cortado la conexión con la Agencia"), std::string::npos);
  EXPECT_EQ(States(), "000");
  AddTickets(1);
  EXPECT_EQ(Send().find("Hay que esperar hasta las 10:31:00: Se ha cortado"), 0U);
  // Another till goes on where the first one died; what it sends is known to be the same.
  Pass(200);
  EXPECT_EQ(Send(When::InTurn, "2"), "Registros enviados: 4. Aceptados: 4, que la Agencia ya tenía: 3");
  EXPECT_EQ(Log(), "3 lose: Correcto\n4 outage ok: Correcto Incorrecto\n");
  // The outage is over.
  AddTickets(1);
  EXPECT_EQ(Send(When::InTurn, "2"), "Registros enviados: 1. Aceptados: 1");
  EXPECT_EQ(Log(), "1 ok: Correcto\n");
  // A number of which the agency has another record, of a copy of this shop, is no duplicate.
  Add(Chained(Kind::Return, "T/1"));
  EXPECT_EQ(Send(When::InTurn, "2"), "Registros enviados: 1. Aceptados: 0, rechazados: 1, que la Agencia ya tenía: 1");
  EXPECT_EQ(States(), "111113");
}

TEST_F(Sending, OnlyOneTillSendsAndWaitsAsLongAsItIsAsked) {
  AddTickets(1);
  Order("wait 30\n");
  EXPECT_EQ(Send(), "Registros enviados: 1. Aceptados: 1");
  AddTickets(1);
  EXPECT_EQ(Send(), "Hay que esperar hasta las 10:30:30: lo pide la Agencia");
  EXPECT_EQ(Send(When::AtOnce), "Hay que esperar hasta las 10:30:30: lo pide la Agencia");
  Pass(31);
  EXPECT_EQ(Send(When::AtOnce, "2"), "Está enviando otra caja de la tienda");
  EXPECT_EQ(Send(), "Registros enviados: 1. Aceptados: 1");
  AddTickets(1);
  Pass(160);
  EXPECT_EQ(Send(When::InTurn, "2"), "Registros enviados: 1. Aceptados: 1");
  // A clock that was put back holds nobody up for years.
  AddTickets(1);
  Pass(-90'000);
  EXPECT_EQ(Send(), "Registros enviados: 1. Aceptados: 1");
}

TEST_F(Sending, OneProcessOfTheShopSendsAndAnotherTakesOverWhenItDies) {
  const auto in_a_process = [&](const std::string& told) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    const auto own = store.Open();
    std::ofstream(folder / told) << Told(SendOnce(*own, agency));
    ::_exit(0);
  };
  for (int round = 1; round <= 3; ++round) {
    AddTickets(20);
    std::vector<pid_t> tills;
    for (const char* name : {"a", "b", "c", "d"}) tills.push_back(in_a_process(name));
    for (const pid_t till : tills) ::waitpid(till, nullptr, 0);
    int sent = 0;
    for (const char* name : {"a", "b", "c", "d"}) sent += folder.Text(name) == "Registros enviados: 20. Aceptados: 20";
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(Log(), "20 ok: Correcto\n");
  }
  AddTickets(5);
  Order("silent\n");
  const pid_t dying = in_a_process("e");
  for (int i = 0; i < 500 && !std::filesystem::exists(folder / "log"); ++i) ::usleep(20'000);
  EXPECT_EQ(Send(When::AtOnce), "Está enviando otra caja de la tienda");
  ::kill(dying, SIGKILL);
  ::waitpid(dying, nullptr, 0);
  Pass(149);
  EXPECT_EQ(Send(), "Está enviando otra caja de la tienda");
  Pass(2);
  EXPECT_EQ(Send(), "Registros enviados: 5. Aceptados: 5, que la Agencia ya tenía: 5");
  EXPECT_EQ(Log(), "5 silent: Correcto\n5 ok: Incorrecto\n");
  EXPECT_EQ(States(), std::string(65, '1'));
}

TEST_F(Sending, FaultsAndSilenceAreTriedAgainWithGrowingPauses) {
  AddTickets(2);
  Order("fault El titular no está\nfault El titular no está\nfault El titular no está\nhtml\n");
  EXPECT_EQ(Send(), "La Agencia ha rechazado el mensaje entero: El titular no está");
  EXPECT_EQ(Send(When::AtOnce), "La respuesta no es la de la Agencia Tributaria. Los registros se volverán a enviar");
  for (const int pause : {120, 240, 480, 900, 900}) {
    const auto turn = ReadTurn(store.connection());
    EXPECT_EQ(AddSeconds(store.clock().now, pause), turn->next) << pause;
    Pass(pause);
    Order("html\n");
    Send();
  }
  EXPECT_EQ(States(), "00");
  Order("silent\n");
  std::thread giving_up([this] {
    ::usleep(1'500'000);
    stop = true;
  });
  EXPECT_NE(Send(When::AtOnce).find("El programa se ha cerrado"), std::string::npos);
  giving_up.join();
  stop = false;
  StopAgency();
  EXPECT_NE(Send(When::AtOnce).find("No se puede conectar con la Agencia"), std::string::npos);
}

TEST_F(Sending, ARecordThatIsRefusedWithItsMessageHoldsNobodyUp) {
  AddTickets(4);
  // Refused: all four, the first two, the first alone; the second alone is taken.
  Order("fault No cumple\nfault No cumple\nfault No cumple\n");
  EXPECT_EQ(Send(), "Registros enviados: 2. Aceptados: 1, rechazados: 1");
  EXPECT_EQ(Send(), "Registros enviados: 2. Aceptados: 2");
  EXPECT_EQ(States(), "3111");
  EXPECT_EQ(RecordsToMend(store.connection()).at(0).reply.text, "No cumple");
}

TEST_F(Sending, ATaxNumberThatIsRefusedHoldsTheShopsOtherOneUpOnlyUntilThatIsTaken) {
  AddTickets(3);
  Order("fault No consta\nfault No consta\nfault No consta\n");  // all three, the first, the second
  EXPECT_EQ(Send(), "La Agencia ha rechazado el mensaje entero: No consta");
  EXPECT_EQ(States(), "000");
  Record other = Chained(Kind::Ticket, "T/4");
  other.issuer = "B99999997";
  Add(other);
  Order("fault No consta\nfault No consta\nfault No consta\n");
  EXPECT_EQ(Send(When::AtOnce).substr(0, 22), "Registros enviados: 4.");
  EXPECT_EQ(States().substr(0, 3), "333");
}

TEST_F(Sending, AThousandGoInAMessageAndNobodyWaitsWhileThereAreMore) {
  {
    Transaction transaction(store.connection());
    AddTickets(1500);
    transaction.Commit();
  }
  Order("wait 60\n");
  EXPECT_EQ(Send(), "Registros enviados: 1000. Aceptados: 1000");
  EXPECT_EQ(Send(), "Hay que esperar hasta las 10:31:00: lo pide la Agencia");
  Transaction transaction(store.connection());
  AddTickets(500);
  transaction.Commit();
  EXPECT_EQ(Send(), "Registros enviados: 1000. Aceptados: 1000");
  EXPECT_EQ(Log(), "1000 wait: Correcto\n1000 ok: Correcto\n");
}

TEST_F(Sending, NobodyButTheAgencyGetsRecordsAndItKnowsTheShop) {
  AddTickets(1);
  Set("CaFile", folder / "shop.pem");
  EXPECT_NE(Send(When::AtOnce).find("Quien contesta no es la Agencia"), std::string::npos);
  Set("CaFile", folder / "server.pem");
  Set("Certificate", folder / "server.pem");
  Set("Key", folder / "server.key");
  EXPECT_NE(Send(When::AtOnce).find("Se ha cortado la conexión"), std::string::npos);
  // A till that cannot send is in nobody's way.
  Set("Key", folder / "shop.key");
  Pass(900);
  EXPECT_EQ(Send().find("No se puede enviar. La clave"), 0U);
  EXPECT_EQ(States(), "0");
  Set("Certificate", folder / "shop.pem");
  EXPECT_EQ(Send(When::InTurn, "2"), "Registros enviados: 1. Aceptados: 1");
}

TEST_F(Sending, GoesOnBesideTheWindowsAndTellsWhatWaitsTooLong) {
  AddTickets(2);
  store.clock().now = {2026, 11, 24, 9, 40};  // universal time: they are ten minutes old
  const auto settles = [](const std::function<bool()>& settled) {
    for (int i = 0; i < 600 && !settled(); ++i) ::usleep(50'000);
    return settled();
  };
  store.connection().Execute("INSERT INTO Parametros (Par_Fiscal) VALUES (1)");
  TestShop shop(store.connection(), store.clock());
  Ports ports{shop.front_end, shop.printers, shop.devices, settings,    store.clock(),
              shop.mailer,    shop.reports,  shop.objects, shop.sound};
  std::optional<StoreErrands> errands(std::in_place, ports, 1, [this] { return store.Open(); });
  EXPECT_EQ(errands->OverdueRecords(), 0);  // from now on it looks after them
  EXPECT_TRUE(settles([&] { return States() == "11"; }));
  StopAgency();
  AddTickets(3);
  EXPECT_TRUE(settles([&] { return ReadTurn(store.connection())->failures == 1; }));
  ::usleep(300'000);
  EXPECT_EQ(errands->OverdueRecords(), 0);
  errands.reset();
  Pass(1);
  errands.emplace(ports, 1, [this] { return store.Open(); });
  EXPECT_TRUE(settles([&] { return errands->OverdueRecords() == 3; }));
  std::vector<ui::StatusItem> band;
  AddWaiting(ports, band);
  EXPECT_TRUE(band.empty());
  ports.errands = &*errands;
  AddWaiting(ports, band);
  ASSERT_EQ(band.size(), 1U);
  EXPECT_EQ(band[0].text, "3 sin enviar");
}

// A day at the till with records on: what is printed, what an inspector gets, what the agency says of it.
TEST_F(AgencyFixture, ADaysCodesAreReadFromPaperAndItsMessagesAreTheSchemas) {
  if (!MakeCertificates()) GTEST_SKIP() << "no openssl program";
  StartAgency();
  PlayOptions day;
  day.store = folder / "tienda.db";
  day.now = DateTime{2026, 11, 24, 10, 30, 0, 0};
  day.paper = folder / "paper";
  day.files = {std::string(TPV_SCENARIO_FOLDER) + "/invoice_records.tpv"};
  std::ostringstream transcript;
  ASSERT_EQ(Play(day, transcript), 0) << transcript.str();
  const SystemClock clock;
  const auto store = OpenExistingStore(day.store, clock);
  std::vector<std::string> urls;
  std::string invoice;
  ForEachRecord(*store, {}, {}, [&](const Record& record) {
    urls.push_back(ValidationUrl(record));
    if (record.kind == Kind::Invoice) invoice = urls.back();
  });
  EXPECT_NE(transcript.str().find("QR tributario:\n[" + invoice + "]\nFactura verificable en la sede"), std::string::npos);

  Machine machine(folder / "tpv.conf");
  const auto order = [&](const std::vector<std::string>& words) -> std::string {
    std::ostringstream out;
    try {
      FiscalCommand(machine, words, out);
    } catch (const std::exception& error) {
      return error.what();
    }
    return out.str();
  };
  const auto exported = [&](const char* to, std::vector<std::string> days = {}) {
    days.insert(days.begin(), {"export", folder / to, "--store", day.store});
    return order(days);
  };
  EXPECT_EQ(order({"check", day.store}), "9 registros: la cadena está entera y dice lo que los tickets y las facturas\n");
  {
    const Transaction undone(*store);
    store->Execute("UPDATE Fav SET Fav_Total = Fav_Total + 1 WHERE Fav_Serie = 'FT' AND Fav_Numero = 1");
    EXPECT_EQ(FindingsText(CheckFiscal(*store).findings),
              "ROTO  Registros de facturación cuya factura falta o dice otra cosa: 1 (3)\n");
  }
  EXPECT_EQ(exported("xml"), "Exportado: 9 registros en " + folder / "xml" + "\n");
  EXPECT_EQ(exported("day", {"--from", "24/11/2026", "--to", "24/11/2026"}), "Exportado: 9 registros en " + folder / "day" + "\n");
  EXPECT_EQ(exported("later", {"--from", "25/11/2026"}), "Exportado: 0 registros en " + folder / "later" + "\n");
  EXPECT_NE(exported("xml").find("Ya existe"), std::string::npos);
  const std::string file = folder / "xml/registros-0001.xml";
  EXPECT_EQ(ModeOf(file), 0600);
  const std::string schemas = std::string(TPV_TEST_FOLDER) + "/../../shared/fiscal/SuministroLR.xsd";
  if (std::filesystem::exists(schemas) && RunProgram({"xmllint", "--version"}).found) {
    const auto checked = RunProgram({"xmllint", "--nonet", "--noout", "--schema", schemas, file});
    EXPECT_TRUE(checked.done) << checked.output;
  }

  EXPECT_EQ(order({"off", day.store}), "Registros de facturación apagados\n");
  Set("Certificate", "");
  EXPECT_EQ(order({"on", "real", day.store}), "No se pueden encender los registros de facturación. Falta:\n  un certificado que "
                                              "sirva. Falta el certificado (ajuste Fiscal.Certificate)");
  Set("Certificate", folder / "shop.pem");
  EXPECT_EQ(order({"set", day.store, "zona", "canarias"}), "zona = canarias\n");
  EXPECT_EQ(order({"on", "pruebas", day.store}), "Registros de facturación encendidos, en pruebas\n");
  EXPECT_EQ(order({"send", "--store", day.store}), "Registros enviados: 9. Aceptados: 9\n");
  EXPECT_EQ(order({"send", "--store", day.store}), "No hay registros que enviar\n");
  EXPECT_EQ(Log(), "9 ok: Correcto\n");

  if (!RunProgram({"zbarimg", "--version"}).found) GTEST_SKIP() << "no zbarimg";
  std::set<std::string> read;
  for (const std::string& pdf : folder.Files(".pdf")) read.insert(ReadBack(folder, pdf));
  EXPECT_TRUE(read.contains(urls[0] + "\n"));
}

}  // namespace
}  // namespace tpv::fiscal
