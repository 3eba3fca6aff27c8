// The panel on paper: its figures and all its charts.
#pragma once

#include "panel/board.h"
#include "platform/report.h"

namespace tpv::panel {

Report BoardReport(const Board& board, const std::string& shop);

}  // namespace tpv::panel
