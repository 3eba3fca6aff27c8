// The panel's figures, each beside that of the period before.
#pragma once

#include <array>
#include <string>

#include "panel/board.h"

namespace tpv::panel {

struct Figure {
  std::string caption;
  std::string now;
  std::string before;  // "980,00 (+12 %)"
  std::string caption_before = "Antes";
};
inline constexpr std::size_t kFigures = 6;
std::array<Figure, kFigures> Figures(const Board& board);

}  // namespace tpv::panel
