#include "sale/payment_methods.h"

#include "base/number_text.h"
#include "context/context.h"

namespace tpv {

ui::Entries PaymentMethods(Context& context) {
  constexpr ChoiceList kMethods{"Select * from Fco", "Fco_Id", "Fco_Des", "00", "00 - Sin asignar"};
  return context.choices.Entries(context.Database(), kMethods);
}

void SelectPaymentMethod(ui::ComboBox& combo, std::int32_t code) {
  combo.index = combo.items.empty() ? -1 : 0;  // "Sin asignar", unless there is such a method
  combo.SelectIf([code](std::string_view entry) { return LeadingNumber(entry.substr(0, 2)) == code; });
}

}  // namespace tpv
