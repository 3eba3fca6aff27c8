// A group of bars a label, one bar a series in it.
#pragma once

#include "adapters/files/pdf/sheet.h"
#include "platform/report.h"

namespace tpv {

void DrawBarChart(Sheet& sheet, const BarChart& chart);

}  // namespace tpv
