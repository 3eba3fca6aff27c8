#include "adapters/headless/scenario/display.h"

#include "platform/database.h"
#include "platform/ui/form.h"
#include "platform/report.h"
#include "platform/ui/controls.h"

namespace tpv::scenario {

namespace {

void Append(std::string& line, const std::string& field, bool first) {
  if (!first) line += " | ";
  line += field;
}

std::string RowText(const ui::List& list, int row) {
  const auto* items = dynamic_cast<const ui::ListView*>(&list);
  const ui::ListItem* item = items != nullptr ? &items->items[static_cast<std::size_t>(row)] : nullptr;
  std::string line = items != nullptr && items->check_boxes ? (item->checked ? "[x] " : "[ ] ") : "";
  const std::size_t columns = item != nullptr ? item->cells.size() : list.layout.size();
  bool first = true;
  for (std::size_t column = 0; column < columns; ++column) {
    if (item == nullptr && list.layout[column].hidden) continue;
    Append(line, list.Cell(row, static_cast<int>(column)), first);
    first = false;
  }
  return line;
}

}  // namespace

std::string TextOf(const ui::Control& control) {
  if (const auto* box = dynamic_cast<const ui::TextBox*>(&control)) return box->text;
  if (const auto* combo = dynamic_cast<const ui::ComboBox*>(&control)) return combo->Text();
  if (const auto* check = dynamic_cast<const ui::CheckBox*>(&control)) {
    return check->checked ? "True" : "False";
  }
  if (const auto* option = dynamic_cast<const ui::OptionButton*>(&control)) {
    return option->checked ? "True" : "False";
  }
  if (const auto* chart = dynamic_cast<const ui::Chart*>(&control)) return chart->data.caption;
  return control.caption;
}

bool HasRows(const ui::Control& control) {
  return dynamic_cast<const ui::List*>(&control) != nullptr || dynamic_cast<const ui::Chart*>(&control) != nullptr;
}

std::size_t RowCount(const ui::Control& control) {
  if (const auto* chart = dynamic_cast<const ui::Chart*>(&control)) return chart->data.labels.size();
  const auto* list = dynamic_cast<const ui::List*>(&control);
  return list != nullptr ? static_cast<std::size_t>(list->ShownCount()) : 0;
}

int CurrentRow(const ui::Control& control) {
  const auto* list = dynamic_cast<const ui::List*>(&control);
  return list != nullptr ? list->PlaceOf(list->current_row) : -1;
}

std::string InBand(const ui::Form& form, std::string_view label) {
  for (const ui::StatusItem& item : form.Band()) {
    if (item.label == label) return item.text;
  }
  return "none";
}

std::string ChartText(const ChartData& chart) {
  std::string text = chart.caption;
  for (const std::string& name : chart.series) text += " | " + name;
  text += "\n";
  for (std::size_t label = 0; label < chart.labels.size(); ++label) text += ChartRow(chart, label) + "\n";
  return text;
}

std::string ValueOf(const ChartData& chart, std::string_view label) {
  for (std::size_t i = 0; i < chart.labels.size(); ++i) {
    if (chart.labels[i] == label) return ChartRow(chart, i).substr(label.size() + 3);
  }
  return "none";
}

std::string RowsOf(const ui::Control& control) {
  if (const auto* chart = dynamic_cast<const ui::Chart*>(&control)) return ChartText(chart->data);
  std::string text;
  const auto& list = dynamic_cast<const ui::List&>(control);
  for (int place = 0; place < list.ShownCount(); ++place) text += RowText(list, list.RowAt(place)) + "\n";
  return text;
}

std::string BoxText(const ui::MessageBox& box) {
  constexpr const char* kIcons[] = {"none", "information", "question", "exclamation", "critical"};
  constexpr const char* kButtons[] = {"OK", "Yes", "No", "Cancel"};
  std::string text = std::string("[") + kIcons[static_cast<int>(box.icon)] + "] \"" + box.text + "\" {";
  for (std::size_t i = 0; i < box.buttons.size(); ++i) {
    const ui::Answer button = box.buttons[i];
    text += std::string(i == 0 ? "" : " ") + kButtons[static_cast<int>(button)];
    if (button == box.default_button) text += "*";
  }
  return text + "}";
}

std::string ReportText(const Report& report) {
  std::string text = "--- report " + report.title + "\n";
  if (report.code) text += report.code->above + "\n[" + report.code->text + "]\n" + report.code->below + "\n";
  for (const auto* lines : {&report.left, &report.right}) {
    for (const std::string& line : *lines) text += line + "\n";
  }
  for (const ReportTable& table : report.tables) {
    if (!table.caption.empty()) text += table.caption + "\n";
    for (const ReportRow& row : table.rows) {
      std::string line;
      for (std::size_t i = 0; i < row.cells.size(); ++i) Append(line, row.cells[i], i == 0);
      text += line + "\n";
    }
  }
  for (const ChartData& chart : report.charts) text += ChartText(chart);
  return text + "---\n";
}

std::string PlainRows(Recordset& rows) {
  std::string text;
  for (; !rows.Eof(); rows.MoveNext()) {
    std::string line;
    for (std::size_t i = 0; i < rows.FieldCount(); ++i) {
      Append(line, rows.Field(i).ToPlainText(), i == 0);
    }
    text += line + "\n";
  }
  return text;
}

}  // namespace tpv::scenario
