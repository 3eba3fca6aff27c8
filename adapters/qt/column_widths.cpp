#include "adapters/qt/column_widths.h"

#include <algorithm>
#include <numeric>

namespace tpv::qt {

int Least(const std::vector<ColumnNeed>& needs) {
  return std::accumulate(needs.begin(), needs.end(), 0,
                         [](int sum, const ColumnNeed& need) { return sum + need.least; });
}

std::vector<int> FitColumns(const std::vector<ColumnNeed>& needs, int room) {
  int slack = 0;
  for (const ColumnNeed& need : needs) slack += std::max(0, need.wanted - need.least);
  int missing = std::max(0, Least(needs) + slack - room);
  std::vector<int> widths;
  for (const ColumnNeed& need : needs) {
    const int own = std::max(0, need.wanted - need.least);
    const int given = slack == 0 ? 0 : std::min(own, own * missing / slack + (own > 0 ? 1 : 0));
    widths.push_back(need.least + own - (missing > 0 ? given : 0));
  }
  return widths;
}

}  // namespace tpv::qt
