// Which articles run out at the pace at which they are sold.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "panel/sums.h"

namespace tpv::panel {

struct Shortage {
  std::int32_t article = 0;
  double days = 0;  // that the stock lasts at this pace; 0 when there is none
};

// Articles whose stock does not last `within` days at the pace at which they were sold in
// the period, the shortest first, `most` of them.
std::vector<Shortage> ReadShortages(Connection& connection, const Sums& sums, std::int64_t days_of_period,
                                    double within, std::size_t most);

// Names by id; what is not there any more is missing.
std::map<std::int32_t, std::string> ArticleNames(Connection& connection, const std::vector<std::int32_t>& ids);

}  // namespace tpv::panel
