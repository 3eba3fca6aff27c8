// The square code on tickets and invoices that a telephone reads (ISO 18004, level M).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

struct SquareCode {
  std::string text;        // what a reader gets, UTF-8
  int side = 0;            // modules
  std::vector<bool> dark;  // side * side of them, row by row

  bool Dark(int column, int row) const {
    return dark[static_cast<std::size_t>(row) * static_cast<std::size_t>(side) +
                static_cast<std::size_t>(column)];
  }
};

// On paper, in centimetres: between 3 and 4, and at least 0.2 of white around it.
inline constexpr double kCodeSide = 3.5;
inline constexpr double kCodeMargin = 0.3;

class CodeEncoder {
 public:
  virtual ~CodeEncoder() = default;
  // Throws PrintError for a text that is too long, or where nothing draws codes.
  virtual SquareCode Encode(std::string_view text) const = 0;
};

}  // namespace tpv
