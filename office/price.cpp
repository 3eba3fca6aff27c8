#include "office/price.h"

#include <cmath>

#include "base/rounding.h"

namespace tpv::office {

std::optional<double> NetThatRings(double price_with_tax, const Tax& tax, int decimals) {
  const double exact = price_with_tax / (1 + (tax.rate + tax.surcharge) / 100);
  const double step = std::pow(10, -decimals);
  const double nearest = RoundHalfAway(exact, decimals);
  // Rates and surcharge are rounded one after the other, which moves the price by a
  // cent at most: one that rings is a cent's worth of steps away.
  const int reach = static_cast<int>(std::ceil(0.01 / step)) + 1;
  for (int away = 0; away <= reach; ++away) {
    for (const int side : {1, -1}) {
      const double net = RoundHalfAway(nearest + side * away * step, decimals);
      if (SameCents(PriceWithTax(net, tax), price_with_tax)) return net;
    }
  }
  return std::nullopt;
}

}  // namespace tpv::office
