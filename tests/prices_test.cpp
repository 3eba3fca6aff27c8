// What a customer is told a piece costs, and what twenty of them come to.
#include <gtest/gtest.h>

#include "base/rounding.h"
#include "data/decimals.h"
#include "data/sql_text.h"
#include "host/demo/catalogue.h"
#include "sale/article_lookup.h"
#include "sale/sale_storage.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

double PriceOf(int article) {
  const Tax tax{1, demo::RateOf(demo::TaxClassOf(article)), 0};
  return PriceWithTax(demo::NetPriceOf(article), tax);
}

// A line of so many pieces, keyed at their price with tax.
void Sell(Connection& store, int article, int units) {
  SaleLine line;
  line.units = units;
  line.net_price = NetPrice(PriceOf(article), demo::RateOf(demo::TaxClassOf(article)),
                            kNewShopPriceDecimals);
  store.Execute("INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_Uni, Lav_Importe, Lav_Tiva) VALUES (1, " +
                std::to_string(article) + ", " + std::to_string(units) + ", " +
                sql::Number(line.Amount()) + ", " + std::to_string(demo::TaxClassOf(article)) + ")");
}

TEST(DemonstrationPrices, SoManyPiecesCostSoManyTimesOne) {
  TestStore store;
  const Transaction undone(store.connection());
  for (int tax_class = 1; tax_class <= 4; ++tax_class) {
    store.connection().Execute("INSERT INTO zrcomun.dbo.tivas (Tiva_iva) VALUES (" +
                               sql::Number(demo::RateOf(tax_class)) + ")");
  }
  for (int article = 1; article <= demo::kArticles; ++article) {
    for (int units = 1; units <= 20; ++units) Sell(store.connection(), article, units);
  }
  const auto sold = store.connection().Execute(
      "SELECT Lav_Idart, Lav_Uni, dbo.FncImporteConIva(Lav_Id) FROM Lav");
  int lines = 0;
  for (; !sold->Eof(); sold->MoveNext(), ++lines) {
    const int article = sold->Field(0).ToInt32();
    const double expected = sold->Field(1).ToDouble() * PriceOf(article);
    EXPECT_TRUE(SameCents(sold->Field(2).ToDouble(), expected))
        << demo::NameOf(article) << ": " << sold->Field(1).ToText() << " x " << PriceOf(article)
        << " = " << sold->Field(2).ToText();
  }
  EXPECT_EQ(lines, 20 * demo::kArticles);
}

}  // namespace
}  // namespace tpv
