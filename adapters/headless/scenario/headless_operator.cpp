#include "adapters/headless/scenario/headless_operator.h"

#include "base/number_text.h"
#include "base/text.h"

namespace tpv::scenario {

void HeadlessOperator::Type(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) engine().TypeCharacter(NextCharacter(text, at));
}

void HeadlessOperator::Scan(std::string_view code) {
  front_end_.Scan(code);
}

void HeadlessOperator::Click(ui::Control& control) {
  const bool clickable = dynamic_cast<ui::Button*>(&control) != nullptr ||
                         dynamic_cast<ui::CheckBox*>(&control) != nullptr ||
                         dynamic_cast<ui::OptionButton*>(&control) != nullptr;
  if (!clickable) throw ui::ActionRefused(control.name + " no es un botón");
  engine().Click(control);
}

void HeadlessOperator::Select(ui::Control& control, const std::string& row_or_entry) {
  if (auto* combo = dynamic_cast<ui::ComboBox*>(&control)) {
    return engine().SelectEntry(*combo, row_or_entry);
  }
  const auto row = ParseInt32(row_or_entry);
  if (!row) throw ui::ActionRefused(control.name + " pide un número de fila");
  engine().SelectRow(control, *row);
}

void HeadlessOperator::Tick(ui::Control& control, int row, bool on) {
  auto* list = dynamic_cast<ui::ListView*>(&control);
  if (list == nullptr) throw ui::ActionRefused(control.name + " no es una lista");
  engine().SetCheck(*list, row, on);
}

void HeadlessOperator::CellButton(ui::Control& control, int row, int column) {
  auto* grid = dynamic_cast<ui::Grid*>(&control);
  if (grid == nullptr) throw ui::ActionRefused(control.name + " no es una rejilla");
  engine().CellButton(*grid, row, column);
}

std::vector<std::string> HeadlessOperator::Matches() {
  const ui::SearchList& list = *front_end_.open_search();
  std::vector<std::string> matches;
  for (const std::size_t row : list.Visible()) {
    std::string& match = matches.emplace_back();
    for (std::size_t column = 0; column < list.request().shown_columns.size(); ++column) {
      match += (column > 0 ? " | " : "") + list.Cell(row, column);
    }
  }
  return matches;
}

void HeadlessOperator::PickRow(std::size_t visible_row) {
  const auto& visible = front_end_.open_search()->Visible();
  if (visible_row >= visible.size()) {
    throw ui::ActionRefused("la búsqueda no tiene la fila " + std::to_string(visible_row));
  }
  front_end_.CloseSearch(visible[visible_row]);
}

void HeadlessOperator::PickText(std::string_view text) {
  const auto row = front_end_.open_search()->First(text);
  if (!row) throw ui::ActionRefused("la búsqueda no tiene «" + std::string(text) + "»");
  front_end_.CloseSearch(row);
}

}  // namespace tpv::scenario
