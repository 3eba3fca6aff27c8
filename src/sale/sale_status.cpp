// The state of the till as the operator sees it at a glance.
#include "sale/sale_entry.h"

namespace tpv {

namespace {

using ui::StatusItem;

StatusItem Known(const char* label, const std::string& text, const char* missing) {
  if (text.empty()) return {label, missing, StatusItem::Tone::Missing};
  return {label, text, StatusItem::Tone::Neutral};
}

}  // namespace

std::vector<StatusItem> SaleEntry::Status() const {
  using Tone = StatusItem::Tone;
  const std::string& till = Text1[6].text;
  const StatusItem state{"Caja", (till.empty() ? "sin número" : till) +
                                     std::string(till_open_ ? " · abierta" : " · cerrada"),
                         till_open_ ? Tone::Good : Tone::Missing};
  const StatusItem sale = sale_in_progress_ ? StatusItem{"Venta", "En curso", Tone::Good}
                                            : StatusItem{"Venta", "Ninguna", Tone::Neutral};
  return {state, Known("Vendedor", Text1[1].text, "sin indicar"),
          Known("Cliente", Text1[5].text, "sin indicar"), sale};
}

}  // namespace tpv
