// What every table of the till has in common.
#pragma once

class QTableView;

namespace tpv::qt {

// Whole rows, one at a time, no editing, no grid, rows of one height.
void PrepareTable(QTableView& table);

}  // namespace tpv::qt
