// What a customer still owes on tickets.
#pragma once

#include <cstdint>

namespace tpv {

struct Context;

// Euros over the customer's open tickets; a ticket paid too much lowers it.
double CustomerDebt(Context& context, std::int32_t customer_id);

}  // namespace tpv
