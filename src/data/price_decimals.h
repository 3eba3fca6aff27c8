// How finely new shops keep their net prices.
#pragma once

namespace tpv {

// With four decimals every price with tax, whatever its rate, has a net price that
// rings exactly it again, also taken many times.
inline constexpr int kPriceDecimals = 4;

}  // namespace tpv
