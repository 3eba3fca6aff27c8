// Prices typed with tax, and the net prices that ring exactly them.
#pragma once

#include <optional>

#include "sale/article_lookup.h"

namespace tpv::office {

// The net price with at most `decimals` decimals (Par_decpre) whose price with tax
// and surcharge on the sale screen is `price_with_tax`, which has whole cents.
// Nullopt when no net price of so few decimals rings it.
std::optional<double> NetThatRings(double price_with_tax, const Tax& tax, int decimals);

}  // namespace tpv::office
