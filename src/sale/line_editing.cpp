// Accepting, dropping and changing lines on the sale screen.
#include "base/mask.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "sale/sale_screen.h"

namespace tpv {

void FrmTpv::Accept() {
  if (AcceptLine()) EndLine();
}

void FrmTpv::Drop() {
  SaleEntry::Drop();
  EndLine();
}

void FrmTpv::EndLine() {
  Frame4.enabled = cmdSalir.enabled = cmdNueva.enabled = cmdAparcar.enabled = true;
  cmdGuardar.enabled = cmdCancelar.enabled = !Quick();
  SetFocus(Text1[19]);
}

void FrmTpv::EditLine(int row, int column) {
  constexpr int kDescriptionColumn = 5;
  if (column != kDescriptionColumn) return;
  const auto value = [&](const char* field) -> const Variant& { return dbgVenta.Value(row, field); };
  price_decimals_ = PriceDecimals();
  const std::string mask = MaskWithDecimals("#,##0.", price_decimals_);
  edited_line_ = value("Lav_Id").ToInt32();
  article_id_ = value("Lav_Idart").IntOr(0);
  // The line keeps its own tax, whatever article was looked up last.
  const auto stored = Database().Execute("SELECT Lav_Tiva FROM Lav WHERE Lav_Id = " +
                                         sql::Number(std::int64_t{edited_line_}));
  tax_ = {stored->Eof() ? 0 : stored->Field(0).IntOr(0), value("Tiva_iva").NumberOr(0),
          value("Tiva_rec").NumberOr(0)};
  Text1[21].text = value("Lav_Uni").TextOr("");
  Text1[19].text = looked_up_code_ = value("Lav_CodArt").TextOr("");
  Text1[18].text = value("Lav_Des").TextOr("");
  Text1[7].text = FormatNumber(value("Lav_DTo1").NumberOr(0), mask);
  Text1[17].text = FormatNumber(value("Precio").NumberOr(0), mask);
  cmdGuardar.enabled = cmdCancelar.enabled = true;
  Frame4.enabled = cmdSalir.enabled = cmdNueva.enabled = cmdAparcar.enabled = false;
  SetFocus(Text1[21]);
}

}  // namespace tpv
