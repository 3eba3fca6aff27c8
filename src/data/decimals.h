// How many decimals a store's prices and units have.
#pragma once

namespace tpv {

struct Context;

// With four, the price without tax that a line keeps is near enough to its price
// with tax for twenty units; what new shops are given.
inline constexpr int kNewShopPriceDecimals = 4;

int PriceDecimals(const Context& context);  // par_decpre; null means 2
int UnitDecimals(const Context& context);   // par_deccan; null means 2

}  // namespace tpv
