// A scanned code belongs to the article field, wherever the focus stands.
#include "base/mask.h"
#include "base/number_text.h"
#include "platform/settings.h"
#include "sale/sale_entry.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

ui::TextBox* SaleEntry::FieldForScan() {
  if (!SettleWaitingLine()) return nullptr;
  if (sale_in_progress_) return &Text1[19];
  if (!cmdNueva.IsEnabled()) {
    Refuse("No hay ninguna venta en curso", nullptr, Icon::Exclamation);
    return nullptr;
  }
  StartOrCancel();
  return sale_in_progress_ ? &Text1[19] : nullptr;
}

// An article that waits for a price or for acceptance is neither thrown away nor
// stored without a word. False when it still waits.
bool SaleEntry::SettleWaitingLine() {
  const bool waits = article_id_ != 0 && !Text1[19].text.empty();
  if (!waits) return true;
  pending_message = "e";
  const Answer keep = Ask("«" + Text1[18].text + "» está sin guardar. ¿Desea guardar la línea?",
                          Icon::Exclamation, Answer::Yes, true);
  if (keep == Answer::No) Drop();
  if (keep == Answer::Yes) Accept();
  return article_id_ == 0;
}

// The layouts are looked for only when the code may have one.
std::optional<WeighedCode> SaleEntry::Weighed(const std::string& code) const {
  if (!code.starts_with('2')) return std::nullopt;
  return ReadWeighedCode(code, context().ports.settings.Read("TPV", "Scanner", "Layout"));
}

// What a scale has printed into the code takes the place of the price, or of the
// units, that the fields would have.
void SaleEntry::TakeWeighed(const WeighedCode& weighed) {
  if (weighed.price) Text1[17].text = FormatNumber(*weighed.price, "##,##0.00");
  if (weighed.units) Text1[21].text = ToSpanish(*weighed.units);
}

}  // namespace tpv
