// All that the panel shows of a period beside the one before, as plain data.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "panel/pending.h"
#include "panel/shortages.h"
#include "panel/sums.h"

namespace tpv {
struct Context;
}

namespace tpv::panel {

struct Board {
  Periods periods;
  Sums now;
  Sums before;
  PendingByAge pending{};  // today
  std::vector<Shortage> shortages;  // of today's stock, at the period's pace
  std::map<std::int32_t, std::string> sellers;
  std::map<std::int32_t, std::string> articles;  // of those that a chart names
};

// Read from one state of the store. Throws DatabaseError, and GivenUp where somebody
// listens.
Board ReadBoard(Context& context, const Periods& periods, const LineTax& tax_of);

}  // namespace tpv::panel
