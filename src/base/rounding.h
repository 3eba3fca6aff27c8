// The one rounding rule for prices and amounts.
#pragma once

namespace tpv {

// Rounds half away from zero on the decimal value that the double stands for
// (its shortest decimal text): 2.675 to 2 decimals is 2.68, 1.005 is 1.01,
// -2.675 is -2.68. `decimals` from 0 to 15; not-finite values come back as they
// are.
double RoundHalfAway(double value, int decimals);

// True when both amounts are the same cents. 4.06 + 8.04 equals 12.10.
bool SameCents(double left, double right);

}  // namespace tpv
