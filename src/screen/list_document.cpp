#include "screen/list_document.h"

#include <algorithm>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"

namespace tpv {

namespace {

std::string Plain(const std::string& caption) { return TrimRight(ReplaceAll(caption, "&", "")); }

std::vector<int> ShownColumns(const ui::List& list) {
  std::vector<int> columns;
  for (int column = 0; column < static_cast<int>(list.layout.size()); ++column) {
    if (!list.layout[static_cast<std::size_t>(column)].hidden) columns.push_back(column);
  }
  return columns;
}

const ui::GridColumn& Layout(const ui::List& list, int column) {
  return list.layout[static_cast<std::size_t>(column)];
}

std::string SpreadsheetCell(const ui::List& list, int row, int column) {
  const Variant* value = list.Content(row, column);
  const bool amount = value != nullptr && value->IsNumber() && !value->IsBool();
  return amount ? ReplaceAll(list.Cell(row, column), ".", "") : list.Cell(row, column);
}

// A list view has nothing but its texts.
double AmountIn(const ui::List& list, int row, int column) {
  const Variant* value = list.Content(row, column);
  if (value == nullptr) return NumberOrZero(list.Cell(row, column));
  return value->IsNumber() ? value->ToDouble() : 0;
}

std::string SumOf(const ui::List& list, int column) {
  double sum = 0;
  for (int place = 0; place < list.ShownCount(); ++place) {
    const int row = list.RowAt(place);
    if (!list.IsDetail(row)) sum += AmountIn(list, row, column);
  }
  const std::string& mask = Layout(list, column).mask;
  return FormatNumber(RoundHalfAway(sum, 2), mask.empty() ? "#,##0.00" : mask);
}

// What a field says of what is listed; "" for one that says nothing.
std::string Said(const ui::Control& control) {
  if (!control.IsVisible()) return {};
  const std::string caption = Plain(control.caption);
  if (const auto* box = dynamic_cast<const ui::TextBox*>(&control)) {
    const bool asks = !box->locked && !caption.empty() && !box->text.empty();
    return asks ? caption + ": " + box->text : std::string();
  }
  if (const auto* combo = dynamic_cast<const ui::ComboBox*>(&control)) {
    return combo->Text().empty() ? std::string() : caption + ": " + combo->Text();
  }
  const auto* check = dynamic_cast<const ui::CheckBox*>(&control);
  const auto* option = dynamic_cast<const ui::OptionButton*>(&control);
  const bool on = (check != nullptr && check->checked) || (option != nullptr && option->checked);
  return on ? caption : std::string();
}

std::vector<std::string> Asked(const ui::List& list) {
  std::vector<std::string> lines;
  for (const ui::Control* control : list.form.InLayoutOrder()) {
    if (std::string said = Said(*control); !said.empty()) lines.push_back(std::move(said));
  }
  if (!list.filter.empty()) lines.push_back("Filtro: " + list.filter);
  if (list.sorted_by >= 0) {
    lines.push_back("Por " + Layout(list, list.sorted_by).caption + (list.descending ? ", de mayor a menor" : ""));
  }
  return lines;
}

void AddSums(const ui::List& list, const std::vector<int>& columns, ReportTable& table) {
  ReportRow sums;
  sums.strong = true;
  bool any = false;
  for (const int column : columns) {
    const bool adds = Layout(list, column).adds_up;
    any = any || adds;
    sums.cells.push_back(adds ? SumOf(list, column) : std::string());
  }
  if (!any) return;
  if (sums.cells.front().empty()) sums.cells.front() = "Total";
  table.rows.push_back(std::move(sums));
}

}  // namespace

std::string TitleOf(const ui::List& list) {
  const bool framed = list.frame != nullptr && !list.frame->caption.empty();
  const std::string own = list.caption.empty() && framed ? list.frame->caption : list.caption;
  const std::string form = Plain(list.form.caption);
  return own.empty() ? form : form + ". " + Plain(own);
}

std::vector<std::vector<std::string>> TableOf(const ui::List& list) {
  const std::vector<int> columns = ShownColumns(list);
  std::vector<std::vector<std::string>> table(1);
  for (const int column : columns) table[0].push_back(Layout(list, column).caption);
  for (int place = 0; place < list.ShownCount(); ++place) {
    auto& cells = table.emplace_back();
    for (const int column : columns) cells.push_back(SpreadsheetCell(list, list.RowAt(place), column));
  }
  return table;
}

std::string ClipboardText(const ui::List& list) {
  std::string text;
  for (const auto& row : TableOf(list)) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      text += (i > 0 ? "\t" : "") + OneLine(ReplaceAll(row[i], "\t", " "));
    }
    text += '\n';
  }
  return text;
}

Report ReportOf(const ui::List& list, const DateTime& now) {
  const std::vector<int> columns = ShownColumns(list);
  ReportTable table;
  for (const int column : columns) {
    const ui::GridColumn& layout = Layout(list, column);
    table.columns.push_back({layout.caption, layout.width > 0 ? static_cast<double>(layout.width) : 1500.0,
                             layout.align == ui::Align::Right});
  }
  for (int place = 0; place < list.ShownCount(); ++place) {
    ReportRow& row = table.rows.emplace_back();
    for (const int column : columns) row.cells.push_back(list.Cell(list.RowAt(place), column));
  }
  AddSums(list, columns, table);
  Report report;
  report.title = TitleOf(list);
  report.left = Asked(list);
  const int rows = list.ShownCount();
  report.right = {ToDayFirstSeconds(now), std::to_string(rows) + (rows == 1 ? " fila" : " filas")};
  report.tables = {std::move(table)};
  return report;
}

}  // namespace tpv
