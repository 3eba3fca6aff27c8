// Invoices of tickets: the contract with the suite's components step by step, and
// what their stand-ins keep.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <map>

#include "base/mask.h"
#include "context/context.h"
#include "invoicing/ticket_invoice.h"
#include "platform/objects.h"
#include "platform/pulse.h"
#include "suite/due_dates.h"
#include "suite/invoice_paper.h"
#include "tests/test_shop.h"

namespace tpv {
namespace {

using Steps = std::vector<std::string>;

// Notes what is done to a component before passing it on; a method can be told
// to answer something else.
class Watched : public Object {
 public:
  Watched(std::string name, std::shared_ptr<Object> inner, Steps& steps,
          const std::map<std::string, Variant>& answers)
      : name_(std::move(name)), inner_(std::move(inner)), steps_(steps), answers_(answers) {}

  Variant Get(std::string_view property) override { return inner_->Get(property); }
  void Put(std::string_view property, const Variant& value) override {
    steps_.push_back(name_ + "." + std::string(property) +
                     (value.IsObject() ? "" : "=" + value.ToText()));
    inner_->Put(property, value);
  }
  Variant Call(std::string_view method, std::span<Variant> arguments) override {
    std::string text;
    for (const Variant& argument : arguments) text += (text.empty() ? "" : ",") + argument.ToText();
    steps_.push_back(name_ + "." + std::string(method) + "(" + text + ")");
    const auto answer = answers_.find(std::string(method));
    return answer != answers_.end() ? answer->second : inner_->Call(method, arguments);
  }

 private:
  std::string name_;
  std::shared_ptr<Object> inner_;
  Steps& steps_;
  const std::map<std::string, Variant>& answers_;
};

class WatchingFactory : public ObjectFactory {
 public:
  explicit WatchingFactory(ObjectFactory& inner) : inner_(inner) {}

  Steps steps;
  std::map<std::string, Variant> answers;

  std::shared_ptr<Object> Create(std::string_view class_name) override {
    const std::string name = class_name.starts_with("ZRT") ? "Tesore" : "Factu";
    steps.push_back("new " + std::string(class_name));
    return std::make_shared<Watched>(name, inner_.Create(class_name), steps, answers);
  }

 private:
  ObjectFactory& inner_;
};

// A shop with one customer and two tickets of one line each, 12.10 and 6.05.
class InvoiceTest : public ::testing::Test {
 protected:
  InvoiceTest() {
    for (const char* statement :
         {"INSERT INTO Parametros (Par_Nombre, Par_Doc) VALUES ('La Esquina', 'B1')",
          "INSERT INTO zrcomun.dbo.tivas (Tiva_iva, Tiva_rec, tiva_reg, tiva_art, Tiva_Fecha) "
          "VALUES (21, 5.2, 1, 1, '01/01/2020')", "INSERT INTO BANCOS (Ban_CCC) VALUES ('2100')",
          "INSERT INTO Cli (CLI_COD, CLI_NOM, Cli_Cta, cli_ban, Cli_Di1, Cli_Di2, Cli_msp) "
          "VALUES (5, 'Bar Pepe', '2038', 1, 10, 25, 8)",
          "INSERT INTO Fcol (Fcol_id, Fcol_Mod) VALUES (2, 1)",
          "INSERT INTO Plazos (plazo_idfco, plazo_modo, plazo_dias) VALUES (2, 1, 30)",
          "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ticket) VALUES "
          "('T', 1, '01/11/2026 10:00:00', 1)",
          "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ticket) VALUES "
          "('T', 2, '02/11/2026 10:00:00', 1)",
          "INSERT INTO Lav (Lav_IdCav, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
          "Lav_Importe, Lav_Tiva) VALUES (1, 'A', 'Vino', 1, 10, 0, 10, 1)",
          "INSERT INTO Lav (Lav_IdCav, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
          "Lav_Importe, Lav_Tiva) VALUES (2, 'B', 'Pan', 2, 2.5, 0, 5, 1)"}) {
      store.connection().Execute(statement);
    }
    invoice.series = "FT";
    invoice.date = "24/11/2026";
    invoice.customer_id = 1;
    invoice.customer_code = "5";
    invoice.customer_name = "Bar Pepe";
    invoice.document = "B2";
    invoice.payment_method = 2;
    invoice.observations = "Gracias";
    invoice.address = {"CL", "Mayor", Variant("7"), "E", "2", "A", "30001", "011", "Murcia", "30"};
    invoice.collected = true;
    invoice.tickets = " WHERE Cav_Ticket = 1 AND Cav_Situa =1";
    invoice.before_marking = [this] { watcher.steps.push_back("customer"); };
    invoice.companion = [this] { watcher.steps.push_back("payment"); };
  }

  bool Store() { return StoreInvoice(context, *invoicing, invoice); }

  TestStore store;
  TestShop shop{store.connection(), store.clock()};
  WatchingFactory watcher{shop.objects};
  Ports ports{shop.front_end, shop.printers, shop.devices, shop.settings, shop.step_clock,
              shop.mailer,    shop.reports,  watcher,      shop.sound};
  Context context{0, 0, 0, 0, shop.database, ports};
  TicketInvoice invoice;
  std::shared_ptr<Object> invoicing = CreateInvoicing(context);
};

TEST_F(InvoiceTest, TellsTheComponentsEverythingInTheirOrder) {
  ASSERT_TRUE(Store());
  EXPECT_EQ(IssueInvoice(*invoicing).error, "");
  const Steps expected = {
      "new ZRFACTUVEN.ZRFACVENTAS", "Factu.MyBd", "Factu.SerieFactura=FT", "Factu.NumeroFactura=0",
      "Factu.FechaFactura=24/11/2026", "Factu.IdCliente=1", "Factu.CliCod=5",
      "Factu.CliNom=Bar Pepe", "Factu.CliDoc=B2", "Factu.IdFco=2", "Factu.Observaciones=Gracias",
      "Factu.PorcentajeDto1=0", "Factu.PorcentajeDto2=0", "Factu.idDir=-1", "Factu.Sg=CL",
      "Factu.Nombre=Mayor", "Factu.Num=7", "Factu.Escalera=E", "Factu.Piso=2", "Factu.Puerta=A",
      "Factu.Cp=30001", "Factu.Pais=011", "Factu.Poblacion=Murcia", "Factu.Provincia=30",
      "Factu.NuevaFactura()", "Factu.IdFactU=1", "customer", "Factu.CalculoTotalesFactura()",
      "Factu.GrabaFactura()", "new ZRTESORERIA.ZRTESORE", "Tesore.MyBd", "Tesore.bCobrado=True",
      "Tesore.IdFactura=1", "Tesore.SerieFactura=FT", "Tesore.NumeroFactura=1",
      "Tesore.FechaFactura=24/11/2026", "Tesore.TotalFactura=18,15", "Tesore.IdFormaCobro=2",
      "Tesore.bCartera=False", "Tesore.IdCliente=1", "Tesore.DiasPago1=10", "Tesore.DiasPago2=25",
      "Tesore.MesSinPago=8", "Tesore.CtaCobroCliente=2038", "Tesore.CtaBancoAsignado=2100",
      "Tesore.Calculo_Vtos_Factura()", "payment", "Factu.Tipo_Emision=1",
      "Factu.EmisionFacturas(1,True)"};
  EXPECT_EQ(watcher.steps, expected);
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Cav WHERE Cav_Situa = 2 AND Cav_IdFactura = 1"), "2");
}

TEST_F(InvoiceTest, StoresNothingWhenAComponentRefusesAStep) {
  const std::map<std::string, Variant> refusals[] = {{{"NuevaFactura", Variant(0)}},
                                                     {{"NuevaFactura", Variant(-1)}},
                                                     {{"GrabaFactura", Variant(false)}}};
  for (const auto& refusal : refusals) {
    watcher.answers = refusal;
    EXPECT_FALSE(Store()) << refusal.begin()->first;
    EXPECT_FALSE(store.connection().InTransaction());
    EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Cav WHERE Cav_Situa = 1"), "2");
    EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Fav"), "0");
  }
  watcher.answers.clear();
  invoice.companion = [] { throw std::runtime_error("sin caja"); };
  EXPECT_THROW(Store(), InvoiceCompanionError);
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Fav"), "0");
}

TEST_F(InvoiceTest, AnInvoiceOfNothingHasNoDueDates) {
  store.connection().Execute("UPDATE Lav SET Lav_Importe = -5 WHERE Lav_CodArt = 'A'");
  ASSERT_TRUE(Store());
  EXPECT_EQ(store.Value("SELECT Fav_Total FROM Fav"), "0");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Vto"), "0");
}

// The engine undoes by itself what it was writing.
TEST_F(InvoiceTest, GivenUpInTheMiddleOfAStatementLeavesNothing) {
  struct Impatient : PulseListener {
    int pulses = 0;
    void OnPulse(double) override {
      if (++pulses > 3) throw GivenUp();
    }
  };
  for (int times = 0; times < 13; ++times) {
    store.connection().Execute("INSERT INTO Lav (Lav_IdCav, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
                               "Lav_Importe, Lav_Tiva) SELECT 1, Lav_Des, 1, 1, 0, 1, Lav_Tiva FROM Lav");
  }
  {
    const Impatient impatient;
    EXPECT_THROW(Store(), GivenUp);
  }
  EXPECT_FALSE(store.connection().InTransaction());
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Fav"), "0");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Cav WHERE Cav_Situa = 1"), "2");
  EXPECT_TRUE(Store());
}

// Line by line they would make a base of 133.20 with 27.75 of tax, which is not its 21 %.
TEST_F(InvoiceTest, BaseAndTaxOfARateComeFromItsTotal) {
  for (int line = 0; line < 60; ++line) {
    store.connection().Execute("INSERT INTO Lav (Lav_IdCav, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
                               "Lav_Importe, Lav_Tiva) VALUES (1, 'Bolsa', 1, 1.97, 0, 1.97, 1)");
  }
  ASSERT_TRUE(Store());
  const char* tickets = "SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav";
  EXPECT_EQ(store.Value("SELECT Fav_Total FROM Fav"), store.Value(tickets));
  EXPECT_EQ(store.Value("SELECT Fai_Base FROM Fai"), "133.02");
  EXPECT_EQ(store.Value("SELECT Fai_Cuota FROM Fai"), "27.93");
  EXPECT_EQ(store.Value("SELECT Fav_Base + Fav_Impuestos FROM Fav"), store.Value(tickets));
}

TEST_F(InvoiceTest, PrintsSellerBuyerLinesByTicketTaxesAndDueDates) {
  invoice.collected = false;
  ASSERT_TRUE(Store());
  EXPECT_EQ(IssueInvoice(*invoicing).file, "factura-FT-1.pdf");
  const Report& paper = shop.reports.reports.back();
  EXPECT_EQ(paper.title, "FACTURA FT/1");
  EXPECT_EQ(paper.left, (Steps{"La Esquina", "CIF/NIF B1"}));
  EXPECT_EQ(paper.right, (Steps{"Fecha 24/11/2026", "Bar Pepe", "CIF/NIF B2",
                                "CL Mayor 7 Esc. E Piso 2 Pta. A", "30001 Murcia"}));
  ASSERT_EQ(paper.tables.size(), 4U);
  const auto cells = [&](std::size_t table, std::size_t row) {
    return paper.tables[table].rows.at(row).cells;
  };
  EXPECT_EQ(cells(0, 2), (Steps{"", "Ticket T/2 del 02/11/2026 10:00", "", "", "", "", ""}));
  EXPECT_EQ(cells(0, 3), (Steps{"B", "Pan", "2,00", "3,03", "0,00", "6,05", "21"}));
  EXPECT_EQ(cells(1, 0), (Steps{"15,00", "21", "3,15", "18,15"}));
  EXPECT_EQ(cells(2, 0), (Steps{"25/12/2026", "18,15", "Pendiente"}));
  shop.reports.failing = true;
  EXPECT_NE(IssueInvoice(*invoicing).error.find("La factura está grabada"), std::string::npos);
}

// Notes where a document goes; printing may fail.
class Press : public ReportPress {
 public:
  Steps steps;
  bool failing = false;

  void Print(const Report&, std::string_view printer) override {
    steps.push_back("print on " + std::string(printer));
    if (failing) throw PrintError("sin papel");
  }
  std::string Show(const Report&, std::string_view name) override {
    steps.push_back("show " + std::string(name));
    return {};
  }
};

TEST_F(InvoiceTest, GoesToTheChosenPrinterAndIsShownWhenThatCannotPrint) {
  ASSERT_TRUE(Store());
  Press press;
  const Ports to_press{shop.front_end, shop.printers, shop.devices, shop.settings, shop.step_clock,
                       shop.mailer,    press,         watcher,      shop.sound};
  const suite::InvoicePaper paper(*shop.database, 1);
  shop.printers.Install({"Tickets", "A4"});
  for (const char* chosen : {"", "Vendida", "A4"}) {
    shop.settings.Write("OKRA", "Printer", "Spool", chosen);
    paper.Print(to_press);
  }
  press.failing = true;
  paper.Print(to_press);
  EXPECT_EQ(press.steps, (Steps{"show factura-FT-1", "show factura-FT-1", "print on A4",
                                "print on A4", "show factura-FT-1"}));
  EXPECT_THROW(suite::InvoicePaper(*shop.database, 2), ObjectError);
}

// A till that gives up every third invoice leaves no gap for the other one either.
TEST_F(InvoiceTest, NumbersWithoutGapUnderTwoProcesses) {
  constexpr int kInvoices = 30;
  const auto make = [&] {
    const auto connection = store.Open();
    TestShop other(*connection, store.clock());
    for (int i = 0; i < kInvoices; ++i) {
      auto component = other.Create("ZRFACTUVEN.ZRFACVENTAS");
      component->Put("SerieFactura", Variant("FT"));
      component->Put("FechaFactura", Variant("24/11/2026"));
      component->Put("IdCliente", Variant(1));
      Transaction transaction(*connection);
      component->Invoke("NuevaFactura");
      if (i % 3 != 0) transaction.Commit();
    }
  };
  const pid_t child = ::fork();
  if (child == 0) {
    make();
    ::_exit(0);
  }
  make();
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(store.Value("SELECT COUNT(DISTINCT Fav_Numero) FROM Fav WHERE Fav_Serie = 'FT'"), "40");
  EXPECT_EQ(store.Value("SELECT MAX(Fav_Numero) FROM Fav"), "40");
}

TEST(DueDates, FollowThePaymentMethodAndTheCustomer) {
  using suite::PaymentLine;
  struct Case {
    DateTime invoiced;
    std::vector<PaymentLine> lines;
    suite::PaymentTerms terms;
    Steps expected;
  };
  const Case cases[] = {
      {{2026, 11, 24}, {}, {}, {"24/11/2026 100,00"}},
      {{2026, 1, 31}, {{30, 0, 1}}, {}, {"02/03/2026 100,00"}},
      // Three equal parts: the last takes the cent that is left.
      {{2026, 1, 1}, {{0}, {30}, {60}}, {}, {"01/01/2026 33,33", "31/01/2026 33,33", "02/03/2026 33,34"}},
      {{2026, 1, 1}, {{0, 20}, {30}}, {}, {"01/01/2026 20,00", "31/01/2026 80,00"}},
      // On the next payment day, whichever was written first; into the next month when both are past.
      {{2026, 3, 5}, {{0}}, {25, 10}, {"10/03/2026 100,00"}},
      {{2026, 3, 10}, {{0}}, {25, 10}, {"10/03/2026 100,00"}},
      {{2026, 3, 11}, {{0}}, {10, 25}, {"25/03/2026 100,00"}},
      {{2026, 12, 26}, {{0}}, {10, 25}, {"10/01/2027 100,00"}},
      // The 31st of a shorter month is its last day; a leap day counts.
      {{2028, 2, 1}, {{0}}, {31, 0}, {"29/02/2028 100,00"}},
      {{2026, 4, 30}, {{0}}, {31, 0}, {"30/04/2026 100,00"}},
      // Nothing is paid in August: in September, on a payment day when there is one.
      {{2026, 7, 10}, {{30}}, {10, 0, 8}, {"10/09/2026 100,00"}},
      {{2026, 8, 31}, {{0}}, {0, 0, 8}, {"30/09/2026 100,00"}},
      {{2026, 12, 20}, {{0}}, {0, 0, 12}, {"20/01/2027 100,00"}},
  };
  for (const Case& one : cases) {
    Steps found;
    for (const auto& due : suite::DueDates(one.invoiced, 100, one.lines, one.terms)) {
      found.push_back(ToDayFirst(due.date) + " " + FormatNumber(due.amount, "0.00"));
    }
    EXPECT_EQ(found, one.expected) << ToDayFirst(one.invoiced);
  }
}

}  // namespace
}  // namespace tpv
