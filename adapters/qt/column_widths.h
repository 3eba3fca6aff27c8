// How wide a table's columns are in the room there is.
#pragma once

#include <vector>

namespace tpv::qt {

struct ColumnNeed {
  int wanted = 0;  // to show everything
  int least = 0;   // to show what must not be cut
};

int Least(const std::vector<ColumnNeed>& needs);
// What they want where the room allows it; else each gives of what it has above
// its least, in proportion.
std::vector<int> FitColumns(const std::vector<ColumnNeed>& needs, int room);

}  // namespace tpv::qt
