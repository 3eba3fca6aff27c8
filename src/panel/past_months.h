// What the panel of a year will ask for, added up before somebody waits for it.
#pragma once

#include <functional>

#include "panel/sums.h"

namespace tpv {
struct Context;
}

namespace tpv::panel {

// Has the store keep the past months of this year and the last, as far as it does not, the
// latest first, until `stop`. Throws DatabaseError.
void KeepPastMonths(Connection& connection, const DateTime& today, const LineTax& tax_of,
                    const std::function<bool()>& stop);

// The same while the operator goes on, where the host does errands and the store keeps months.
void KeepPastMonthsBehind(Context& context);

}  // namespace tpv::panel
