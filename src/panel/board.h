// All that the panel shows of a period beside the one before: figures and charts, as plain
// data.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "panel/sums.h"
#include "platform/chart.h"

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

enum class Picture { Days, Hours, Means, Sellers, Tills, Articles, Rates, Pending, Shortages };
inline constexpr std::size_t kPictures = 9;

// In the order of Picture. The values over all labels come to the journal's totals.
std::array<ChartData, kPictures> Pictures(const Board& board);

struct Figure {
  std::string caption;
  std::string now;
  std::string before;  // "980,00 (+12 %)"
  std::string caption_before = "Antes";
};
inline constexpr std::size_t kFigures = 6;
std::array<Figure, kFigures> Figures(const Board& board);

}  // namespace tpv::panel
