#include "panel/panel_report.h"

#include "panel/figures.h"
#include "panel/pictures.h"

namespace tpv::panel {

Report BoardReport(const Board& board, const std::string& shop) {
  Report report;
  report.title = "PANEL DE LA TIENDA";
  report.left = {shop};
  report.right = {"Periodo: " + board.periods.now.Text(), "El anterior: " + board.periods.before.Text()};
  ReportTable table;
  table.columns = {{"", 2}, {"ESTE PERIODO", 2, true}, {"EL ANTERIOR", 3, true}};
  for (const Figure& figure : Figures(board)) table.rows.push_back({{figure.caption, figure.now, figure.before}});
  report.tables = {table};
  for (ChartData& chart : Pictures(board)) report.charts.push_back(std::move(chart));
  return report;
}

}  // namespace tpv::panel
