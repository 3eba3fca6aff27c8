// What customers owe, by how long.
#pragma once

#include <array>

#include "panel/sums.h"

namespace tpv::panel {

// What tickets not wholly collected still owe, by the ticket's age in days: up to 7, 30, 90,
// 365, and older.
inline constexpr std::array<int, 4> kAges = {7, 30, 90, 365};
using PendingByAge = std::array<Cents, kAges.size() + 1>;
PendingByAge ReadPending(Connection& connection, const DateTime& today);

}  // namespace tpv::panel
