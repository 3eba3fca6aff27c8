#include "platform/ui/controls.h"

#include <algorithm>
#include <stdexcept>

#include "base/mask.h"
#include "base/text.h"
#include "platform/database.h"
#include "platform/pulse.h"
#include "platform/ui/form.h"

namespace tpv::ui {

Control::Control(Form& owner, std::string control_name)
    : form(owner), name(std::move(control_name)) {
  form.controls_.push_back(this);
}

bool Control::IsEnabled() const { return enabled && (frame == nullptr || frame->IsEnabled()); }

bool Control::IsVisible() const { return visible && (frame == nullptr || frame->IsVisible()); }

void TextBox::SelectAll() {
  selection_start = 0;
  selection_length = Length(text);
}

void TextBox::ClampSelection() {
  if (selection_start + selection_length == 0) return;
  const std::size_t length = Length(text);
  selection_start = std::min(selection_start, length);
  selection_length = std::min(selection_length, length - selection_start);
}

TextBox& TextBoxes::Add(int index, std::string caption) {
  auto& box = boxes_[index];
  if (!box) box = std::make_unique<TextBox>(form_, name_ + "(" + std::to_string(index) + ")");
  if (!caption.empty()) box->caption = std::move(caption);
  return *box;
}

Label::Label(Form& owner, std::string control_name, std::string text)
    : Control(owner, std::move(control_name)) {
  caption = std::move(text);
}

Button::Button(Form& owner, std::string control_name, std::string text)
    : Control(owner, std::move(control_name)) {
  caption = std::move(text);
}

CheckBox::CheckBox(Form& owner, std::string control_name, std::string text, bool on)
    : Control(owner, std::move(control_name)), checked(on) {
  caption = std::move(text);
}

OptionButton::OptionButton(Form& owner, std::string control_name, std::string text)
    : Control(owner, std::move(control_name)) {
  caption = std::move(text);
}

void OptionButton::Check() {
  for (Control* control : form.Controls()) {
    auto* option = dynamic_cast<OptionButton*>(control);
    if (option != nullptr && option->frame == frame) option->checked = option == this;
  }
}

ComboBox::ComboBox(Form& owner, std::string control_name, std::string label)
    : Control(owner, std::move(control_name)) {
  caption = std::move(label);
}

std::string ComboBox::Text() const { return index < 0 ? std::string() : items.at(index); }

void ComboBox::Offer(Entries entries) {
  items = std::move(entries);
  index = items.empty() ? -1 : 0;
}

void ComboBox::SelectIf(const std::function<bool(std::string_view)>& matches) {
  const auto found = std::find_if(items.begin(), items.end(), matches);
  if (found != items.end()) index = static_cast<int>(found - items.begin());
}

void Grid::Bind(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show) {
  Clear();
  layout = std::move(columns_to_show);
  const std::size_t count = rows_to_show.FieldCount();
  fields.clear();
  for (std::size_t i = 0; i < count; ++i) {
    fields.push_back(rows_to_show.FieldName(i));
    if (layout.size() <= i) layout.emplace_back().caption = fields.back();
  }
  std::vector<std::vector<Variant>> read;  // all of them, or none is shown
  for (; !rows_to_show.Eof(); rows_to_show.MoveNext()) {
    Pulse();
    read.push_back(rows_to_show.Fields());
  }
  rows = std::move(read);
  current_row = rows.empty() ? -1 : 0;
}

void Grid::BindAgain(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show,
                     std::string_view key_field) {
  const auto keys = [&] {
    std::vector<std::int32_t> found;
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
      found.push_back(Value(row, key_field).IntOr(0));
    }
    return found;
  };
  const int row = current_row;
  const std::vector<std::int32_t> before = keys();
  Bind(rows_to_show, std::move(columns_to_show));
  current_row = PlaceAmong(before, row, keys());
}

int PlaceAmong(const std::vector<std::int32_t>& before, int row, const std::vector<std::int32_t>& now) {
  const int last = static_cast<int>(now.size()) - 1;
  if (now.size() == before.size() + 1) {
    const auto newest = std::find_if(now.begin(), now.end(), [&](std::int32_t key) {
      return std::find(before.begin(), before.end(), key) == before.end();
    });
    if (newest != now.end()) return static_cast<int>(newest - now.begin());
  }
  return std::clamp(row, std::min(0, last), last);
}

void Grid::Clear() {
  rows.clear();
  current_row = -1;
}

int Grid::Column(std::string_view field) const {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (EqualNoCase(fields[i], field)) return static_cast<int>(i);
  }
  throw std::out_of_range(name + ": " + std::string(field));
}

const Variant& Grid::Value(int row, std::string_view field) const {
  return rows.at(row).at(Column(field));
}

std::string Grid::Cell(int row, int column) const {
  return Format(rows.at(row).at(column), layout.at(column).mask);
}

Frame::Frame(Form& owner, std::string control_name, std::string text)
    : Control(owner, std::move(control_name)) {
  caption = std::move(text);
}

void Frame::Rows(std::vector<std::vector<Control*>> layout_rows) {
  rows = std::move(layout_rows);
  for (const auto& row : rows) {
    for (Control* control : row) control->frame = this;
  }
}

}  // namespace tpv::ui
