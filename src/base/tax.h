// What of a total with tax is the base and what the tax.
#pragma once

#include "base/rounding.h"

namespace tpv {

// The base in cents of a total with tax at a rate in percent; what is left of the
// total is its tax: base times rate to the cent, or next to it where no base gives
// the total (1.01 at 21 %).
inline double BaseOf(double total, double rate) {
  return RoundHalfAway(total / (1 + rate / 100), 2);
}

}  // namespace tpv
