// Many tills on one embedded store, each a process of its own.
#pragma once

#include <string>
#include <vector>

namespace tpv::bench {

// 1, 2, 4 and 8 at once, through the till and by hand, `seconds` each time; prints
// a table.
void MeasureRivals(double seconds);

// What one of the processes does: `tpv_bench seller STORE TILL START SECONDS till|direct`.
// Sells from START (seconds of the steady clock) on and writes its count of sales
// and the microseconds of each step.
int Sell(const std::vector<std::string>& words);

}  // namespace tpv::bench
