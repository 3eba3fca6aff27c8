// What tax an article's price carries.
#pragma once

#include <cstdint>
#include <map>

namespace tpv {

class Connection;

// Rates in percent.
struct Tax {
  std::int32_t id = 0;
  double rate = 0;
  double surcharge = 0;
};

// Unit price with tax and surcharge, in cents.
double PriceWithTax(double net_price, const Tax& tax);

// By art_tiva: the rows that the sale screen uses today.
using TaxKinds = std::map<int, Tax>;
TaxKinds TaxKindsToday(Connection& connection);

}  // namespace tpv
