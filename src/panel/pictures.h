// The panel's charts.
#pragma once

#include <array>

#include "panel/board.h"
#include "platform/chart.h"

namespace tpv::panel {

enum class Picture { Days, Hours, Means, Sellers, Tills, Articles, Rates, Pending, Shortages };
inline constexpr std::size_t kPictures = 9;

// In the order of Picture. The values over all labels come to the journal's totals.
std::array<ChartData, kPictures> Pictures(const Board& board);

}  // namespace tpv::panel
