#include "sale/payment_methods.h"

#include "base/number_text.h"
#include "context/context.h"
#include "data/retired.h"

namespace tpv {

ui::Entries PaymentMethods(Context& context) {
  constexpr ChoiceList kMethods{"Select * from Fco", "Fco_Id", "Fco_Des", "00", "00 - Sin asignar"};
  ui::Entries all = context.choices.Entries(context.Database(), kMethods);
  const std::set<std::int32_t> retired = RetiredOf(context, "Fco");
  if (retired.empty()) return all;
  std::vector<std::string> offered(all.begin(), all.end());
  std::erase_if(offered, [&](const std::string& entry) { return retired.contains(LeadingNumber(entry)); });
  return ui::Entries(std::move(offered));
}

void SelectPaymentMethod(ui::ComboBox& combo, std::int32_t code) {
  combo.index = combo.items.empty() ? -1 : 0;  // "Sin asignar", unless there is such a method
  combo.SelectIf([code](std::string_view entry) { return LeadingNumber(entry.substr(0, 2)) == code; });
}

}  // namespace tpv
