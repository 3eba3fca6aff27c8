// Whether the chain of records is whole and says what the shop's tickets and invoices
// say: every fingerprint is computed again.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "fiscal/setup.h"

namespace tpv::fiscal {

// `what` is a rule in Spanish; `id` the position of the record that breaks it, or the
// Cav_Id or Fav_Id of what has no record.
using Fault = std::function<void(std::string_view what, std::int64_t id)>;

// How many records there are. A store without their tables has none. Throws DatabaseError.
std::int64_t CheckChain(const Desk& desk, const Fault& fault);

}  // namespace tpv::fiscal
