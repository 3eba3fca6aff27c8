// A chart across the page, at the place of the next block.
#pragma once

#include "adapters/files/pdf/sheet.h"
#include "platform/chart.h"

namespace tpv {

void DrawChart(Sheet& sheet, const ChartData& chart);

}  // namespace tpv
