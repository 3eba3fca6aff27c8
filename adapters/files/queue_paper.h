// The paper in a queue's printer, as its driver names it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

struct RollSize {
  std::string name;   // as the driver calls it
  double length = 0;  // centimetres
};

struct QueuePaper {
  double roll_width = 0;      // centimetres; 0 for sheets
  bool any_length = false;    // the driver cuts a roll where it is told to
  std::vector<RollSize> sizes;  // of that width, the shortest first
};

// From "PageSize/Media Size: *RP80x297 RP80x2000 Custom.WIDTHxHEIGHT": what `lpoptions -l`
// prints, the usual size with an asterisk. Sheets where it says nothing.
QueuePaper ReadQueuePaper(std::string_view options);

}  // namespace tpv
