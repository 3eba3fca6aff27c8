// Euros as the whole numbers that are added up, and back.
#pragma once

#include <cmath>

#include "base/rounding.h"
#include "panel/sums.h"

namespace tpv::panel {

inline constexpr const char* kEuros = "#,##0.00 €";

inline Cents ToCents(double euros) { return std::llround(RoundHalfAway(euros, 2) * 100); }
inline Micros ToMicros(double euros) { return std::llround(euros * 1e6); }

inline double Euros(Cents cents) { return static_cast<double>(cents) / 100; }
inline double FromMicros(Micros micros) { return static_cast<double>(micros) / 1e6; }
inline double InCents(Micros micros) { return RoundHalfAway(FromMicros(micros), 2); }

}  // namespace tpv::panel
