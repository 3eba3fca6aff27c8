#include "data/tax_kinds.h"

#include "base/rounding.h"
#include "platform/database.h"

namespace tpv {

double PriceWithTax(double net_price, const Tax& tax) {
  double price = RoundHalfAway(net_price + net_price / 100 * tax.rate, 2);
  if (tax.surcharge != 0) price = RoundHalfAway(price + net_price / 100 * tax.surcharge, 2);
  return price;
}

TaxKinds TaxKindsToday(Connection& connection) {
  TaxKinds kinds;
  const auto rows = connection.Execute(
      "SELECT Tiva_Id, tiva_art, Tiva_iva, Tiva_rec FROM zrcomun.dbo.tivas WHERE tiva_reg = 1 AND "
      "Tiva_Fecha <= getdate() ORDER BY Tiva_Fecha");
  for (; !rows->Eof(); rows->MoveNext()) {
    kinds[rows->Field(1).IntOr(0)] = {rows->Field(0).ToInt32(), rows->Field(2).NumberOr(0),
                                      rows->Field(3).NumberOr(0)};
  }
  return kinds;
}

}  // namespace tpv
