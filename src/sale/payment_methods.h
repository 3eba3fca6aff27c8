// The store's payment methods as combo entries that begin with their code.
#pragma once

#include <cstdint>

#include "platform/ui/controls.h"

namespace tpv {

struct Context;

// "00 - Sin asignar" first, then "01 - Contado" and so on; not those that are retired.
ui::Entries PaymentMethods(Context& context);
// Selects the first entry with this code, if there is one.
void SelectPaymentMethod(ui::ComboBox& combo, std::int32_t code);

}  // namespace tpv
