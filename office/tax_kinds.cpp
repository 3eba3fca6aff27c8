#include "office/tax_kinds.h"

#include "platform/database.h"

namespace tpv::office {

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

}  // namespace tpv::office
