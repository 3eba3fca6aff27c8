// What the office's windows give to others: labels to a scanner, parameters to other tills.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "office/articles/bars.h"
#include "office/articles/price_change.h"
#include "tests/paper_fixture.h"
#include "tests/read_code.h"
#include "tests/test_store.h"
#include "tests/test_till.h"

namespace tpv {
namespace {

class Labels : public Paper {};

// Every size of sheet, and a code that hardly fits on its label.
TEST_F(Labels, AreReadBackFromTheSheet) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  if (!RunProgram({"zbarimg", "--version"}).found) GTEST_SKIP() << "no zbarimg";
  const std::set<std::string> codes = {"8436210000011", "12345670", "4006381333931", "Bolsa-01 x", "0001",
                                       "ABCDEFGHIJ0123456789", "9788471768469"};
  std::vector<Label> labels;
  for (const std::string& code : codes) {
    labels.push_back({"Un artículo de nombre largo que no cabe en su etiqueta", "1.234,95 €", code, office::BarsOf(code)});
  }
  labels.push_back({"Sin barras", "1,00 €", "Ñ1", office::BarsOf("Ñ1")});
  LabelSheet sheet;
  sheet.used = 22;  // goes on to a second sheet after two of them
  const std::string first = ReadBack(folder, machine.reports.Show({labels.begin(), labels.begin() + 2}, sheet, "A"));
  EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 2) << first;
  for (const LabelSheet& size : {LabelSheet{}, LabelSheet{4, 10, 52.5, 29.7, 0, 0, 0, 0}}) {
    std::set<std::string> read;
    for (const std::string& line : Split(ReadBack(folder, machine.reports.Show(labels, size, "B")), "\n")) {
      if (!Trim(line).empty()) read.insert(Trim(line));
    }
    EXPECT_EQ(read, codes);
  }
}

TEST(Prices, EndAsAsked) {
  using enum office::PriceEnd;
  const struct {
    double price;
    office::PriceEnd end;
    double expected;
  } cases[] = {{2.675, Cent, 2.68},      {0.001, Cent, 0.01},      {1.02, FiveCents, 1.00}, {1.03, FiveCents, 1.05},
               {0.01, FiveCents, 0.05},  {1.25, TenCents, 1.30},   {0.02, TenCents, 0.10},  {4.16, NinetyFive, 3.95},
               {4.46, NinetyFive, 4.95}, {0.20, NinetyFive, 0.95}, {9.95, NinetyFive, 9.95}, {10.5, NinetyNine, 10.99},
               {1234.4, NinetyNine, 1233.99}};
  for (const auto& [price, end, expected] : cases) {
    EXPECT_DOUBLE_EQ(office::PriceEndingIn(price, end), expected) << price;
  }
}

// One till's office changes them while another's sale screen stands open.
TEST(Parameters, AreSeenByTheNextSaleOfEveryTill) {
  const TemporaryFolder folder;
  const FixedClock clock;
  TestTill office(folder / "tienda.db", clock);
  TestTill till(folder / "tienda.db", clock);
  till.OpensOffice([&] {
    EXPECT_EQ(office.Play("office\nclick cmdParametros\nenter Text1(13) ZZ\nclick Check1(12)\nselect Combo1(15) 0\n"
                          "enter Text1(0) \"OTRO NOMBRE\"\nclick cmdAceptar\nexpect screen frmOficina\nclose\n"),
              "");
  });
  EXPECT_EQ(till.Play("call zTpv\nenter Text1(6) 1\nenter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 50\n"
                      "click cmdGrabar\nanswer Yes\nkey Add\nexpect Text1(9) T\nscan 0001\nexpect rows dbgVenta 1\n"
                      "key Subtract\nclick cmdTicket\noffice\n"
                      "key Add\nexpect Text1(9) ZZ\nscan 0001\nexpect rows dbgVenta 0\nclick cmdGuardar\n"
                      "expect rows dbgVenta 1\nkey Subtract\nexpect enabled cmdFactura False\nclick cmdTicket\n"
                      "expect printed \"OTRO NOMBRE\"\n"),
            "");
}

// Rates, a customer's price, payment methods and sellers, changed while a sale screen stands open.
TEST(PeopleAndTerms, AreSeenByTheNextSaleOfEveryTill) {
  const TemporaryFolder folder;
  const FixedClock clock;
  TestTill office(folder / "tienda.db", clock);
  TestTill till(folder / "tienda.db", clock);
  till.OpensOffice([&] {
    EXPECT_EQ(office.Play("office\nclick cmdTiposIva\nclick cmdNuevo\nenter Text1(0) 3\nenter Text1(1) 5\n"
                          "enter Text1(3) 24/11/2026\nclick cmdAceptar\nexpect rows lstRegistros 5\nclose\n"
                          "click cmdClientes\nclick cmdPrecios\nclick cmdNuevo\nenter Text1(0) 0001\n"
                          "enter Text1(1) 5,01\nclick cmdAceptar\nclose\nclose\n"
                          "click cmdFormasPago\nselect lstRegistros 1\nclick cmdRetirar\nanswer Yes\nclose\n"
                          "click cmdVendedores\nclick cmdRetirar\nanswer Yes\nclose\nclose\n"),
              "");
  });
  EXPECT_EQ(till.Play("sql UPDATE Cli SET CLI_FCO = 2 WHERE CLI_COD = 2\ncall zTpv\nenter Text1(6) 1\n"
                      "enter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 50\nclick cmdGrabar\nanswer Yes\n"
                      "key Add\nscan 0001\nkey Subtract\nenter Text1(2) 2\nexpect cboFpago \"02 - Tarjeta\"\n"
                      "enter Text1(2) 1\nclick cmdCancelar\nsql UPDATE Cli SET CLI_FCO = 1 WHERE CLI_COD = 2\noffice\n"
                      "sql UPDATE Cli SET CLI_FCO = 2 WHERE CLI_COD = 2\n"
                      "key Add\nanswer OK \"El vendedor está retirado\"\nenter Text1(0) 2\nkey Add\nscan 0001\n"
                      "expect Text1(8) \"5,01\"\n"
                      "expect sql 5 SELECT TOP 1 Tiva_iva FROM Lav INNER JOIN zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva ORDER BY Lav_Id DESC\n"
                      "key Subtract\nenter Text1(2) 2\nexpect cboFpago \"00 - Sin asignar\"\n"),
            "");
}

}  // namespace
}  // namespace tpv
