// The rounding rules for prices and amounts.
#pragma once

#include <cstdint>
#include <optional>

namespace tpv {

// Rounds half away from zero on the decimal value that the double stands for
// (its 15 significant digits): 2.675 to 2 decimals is 2.68, -2.675 is -2.68, and so
// is 3 * 1.005 to 3.02. `decimals` from 0 to 15; not-finite values come back as
// they are.
double RoundHalfAway(double value, int decimals);

// The same on the shortest decimal text of the double, as a database engine turns
// floats into money: 3.0149999999999997 to 2 decimals is 3.01.
double RoundAsEngine(double value, int decimals);

// Either rounding of a size that is not negative, counted in units of the last decimal:
// 12.344 to 2 decimals is 1234. Nullopt where that is not plain: close to a half, from
// 1e9 units on, with more than six decimals, and for what is no number.
std::optional<std::int64_t> RoundedUnits(double size, int decimals);

// True when both amounts are the same cents. 4.06 + 8.04 equals 12.10.
bool SameCents(double left, double right);

}  // namespace tpv
