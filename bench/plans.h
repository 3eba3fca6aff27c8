// What each index is for and what it costs.
#pragma once

namespace tpv::bench {

// Prints a table: for each index the statement of the screens that it helps most,
// with it and without it, and what it adds to a row's insertion; then the indexes
// that no statement uses and the statements that read a whole table of some size.
void PrintPlans(int tickets, int articles);

}  // namespace tpv::bench
