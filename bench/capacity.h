// How many tills one store carries: the store-wide writing lock is what they
// share, so it is simulated with the times that a sale holds it here.
#pragma once

namespace tpv::bench {

// Prints a table.
void PrintCapacity();

}  // namespace tpv::bench
