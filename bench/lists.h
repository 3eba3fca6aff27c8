// The month's lists: sales journal, period invoicing, and what a day of the
// journal costs in a small store and in a large one.
#pragma once

#include <string>
#include <vector>

#include "bench/harness.h"

namespace tpv::bench {

// Stores are made in the folder and stay there.
std::vector<Row> MeasureMonth(const std::string& folder, int runs);
// One row: the day's journal on a store of `tickets` against one of 10,000.
std::vector<Row> MeasureGrowth(const std::string& folder, int tickets, int runs);

}  // namespace tpv::bench
