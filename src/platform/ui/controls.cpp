#include "platform/ui/controls.h"

#include <algorithm>

#include "base/text.h"
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
