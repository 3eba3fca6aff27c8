#include "office/list_editor.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

namespace {

constexpr const char* kBetween = "; ";
constexpr int kTwips = 130;  // of a character, about

std::string TextOf(const ui::Control& field) {
  if (const auto* box = dynamic_cast<const ui::TextBox*>(&field)) return Trim(box->text);
  return dynamic_cast<const ui::ComboBox&>(field).Text();
}

void SetText(ui::Control& field, const std::string& text) {
  if (auto* box = dynamic_cast<ui::TextBox*>(&field)) {
    box->text = text;
  } else {
    dynamic_cast<ui::ComboBox&>(field).SelectIf([&](std::string_view entry) { return entry == text; });
  }
}

std::string Joined(const std::vector<std::string>& cells) {
  std::string row;
  for (const std::string& cell : cells) row += (&cell == cells.data() ? "" : kBetween) + cell;
  return row;
}

}  // namespace

ListEditor::ListEditor(ui::Form& form, const std::string& name, std::vector<Column> columns)
    : list_(form, "lst" + name),
      add_(form, "cmdPoner" + name, "Añadir"),
      change_(form, "cmdCambiar" + name, "Cambiar"),
      remove_(form, "cmdQuitar" + name, "Quitar") {
  for (Column& column : columns) {
    list_.layout.push_back({column.caption, "", column.columns * kTwips});
    const std::string field = name + "(" + std::to_string(fields_.size()) + ")";
    if (column.choices.empty()) {
      auto box = std::make_unique<ui::TextBox>(form, "txt" + field);
      box->max_length = 100;
      fields_.push_back(std::move(box));
    } else {
      auto combo = std::make_unique<ui::ComboBox>(form, "cbo" + field);
      combo->Offer(ui::Entries(std::move(column.choices)));
      fields_.push_back(std::move(combo));
    }
    fields_.back()->caption = column.caption;
    fields_.back()->columns = column.columns;
  }
  list_.selected = [this](int row) { ShowRow(row); };
  add_.click = [this] { Add(); };
  change_.click = [this] { Change(); };
  remove_.click = [this] { Remove(); };
}

std::vector<std::vector<ui::Control*>> ListEditor::Rows() {
  std::vector<ui::Control*> line;
  for (const auto& field : fields_) line.push_back(field.get());
  line.insert(line.end(), {&add_, &change_, &remove_});
  return {{&list_}, std::move(line)};
}

std::vector<std::string> ListEditor::Typed() const {
  std::vector<std::string> cells;
  for (const auto& field : fields_) cells.push_back(TextOf(*field));
  return cells;
}

void ListEditor::Set(std::vector<Cells> rows) {
  list_.items.clear();
  for (Cells& row : rows) {
    row.resize(fields_.size());
    list_.items.push_back({std::move(row)});
  }
  list_.current_row = -1;
}

std::vector<ListEditor::Cells> ListEditor::Get() const {
  std::vector<Cells> rows;
  for (const ui::ListItem& item : list_.items) rows.push_back(item.cells);
  if (rows.empty() && !Typed().front().empty()) rows.push_back(Typed());
  return rows;
}

void ListEditor::SetJoined(const std::vector<std::string>& rows) {
  std::vector<Cells> split;
  for (const std::string& row : rows) split.push_back(Split(row, kBetween));
  Set(std::move(split));
}

std::vector<std::string> ListEditor::GetJoined() const {
  std::vector<std::string> rows;
  for (const Cells& row : Get()) rows.push_back(Joined(row));
  return rows;
}

void ListEditor::Select(std::size_t row) {
  list_.current_row = static_cast<int>(row);
  ShowRow(list_.current_row);
}

std::string ListEditor::Unadded() const {
  const std::vector<Cells> rows = Get();
  if (std::find(rows.begin(), rows.end(), Typed()) != rows.end()) return {};
  for (const auto& field : fields_) {
    if (dynamic_cast<const ui::TextBox*>(field.get()) == nullptr || TextOf(*field).empty()) continue;
    return "«" + TextOf(*field) + "» está escrito, pero no en la lista: pulse Añadir o Cambiar, o bórrelo";
  }
  return {};
}

void ListEditor::ShowRow(int row) {
  if (row < 0 || row >= static_cast<int>(list_.items.size())) return;
  const auto& cells = list_.items[static_cast<std::size_t>(row)].cells;
  for (std::size_t i = 0; i < fields_.size(); ++i) SetText(*fields_[i], cells[i]);
}

// The next one is written where the last one was.
void ListEditor::Add() {
  list_.form.SetFocus(*fields_.front());
  if (Typed().front().empty()) return;
  list_.items.push_back({Typed()});
  list_.current_row = static_cast<int>(list_.items.size()) - 1;
}

void ListEditor::Change() {
  if (list_.current_row < 0) return;
  list_.items.Alter(static_cast<std::size_t>(list_.current_row), [this](ui::ListItem& row) { row.cells = Typed(); });
}

void ListEditor::Remove() {
  if (list_.current_row < 0) return;
  list_.items.erase(list_.items.begin() + list_.current_row);
  list_.current_row = std::min(list_.current_row, static_cast<int>(list_.items.size()) - 1);
  // What was taken away is not typed any more.
  for (const auto& field : fields_) SetText(*field, "");
  ShowRow(list_.current_row);
}

}  // namespace tpv::office
