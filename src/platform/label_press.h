// Adhesive labels for goods and shelves, on A4 sheets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

struct Label {
  std::string name;
  std::string price;  // as it is shown
  std::string code;   // below the bars
  std::string bars;   // modules from the left, '1' dark and '0' white; "" for none

  bool operator==(const Label&) const = default;
};

// Millimetres on the A4 page. Labels stand side by side, a row below the other.
struct LabelSheet {
  int columns = 3;
  int rows = 8;
  double width = 70;
  double height = 37.125;
  double left = 0;  // of the first one
  double top = 0;
  double between = 0;  // from one column to the next
  int used = 0;        // labels that the first sheet lacks already
};

class LabelPress {
 public:
  virtual ~LabelPress() = default;
  // Writes a PDF file, shows it where there is a viewer, and returns its path. Throws
  // PrintError.
  virtual std::string Show(const std::vector<Label>& labels, const LabelSheet& sheet, std::string_view name) = 0;
};

}  // namespace tpv
