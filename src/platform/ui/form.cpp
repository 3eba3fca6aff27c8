#include "platform/ui/form.h"

#include "base/text.h"

namespace tpv::ui {

namespace {

void Collect(const std::vector<std::vector<Control*>>& rows, std::vector<Control*>& found) {
  for (const auto& row : rows) {
    for (Control* control : row) {
      found.push_back(control);
      if (const auto* inside = control->Inside()) Collect(*inside, found);
    }
  }
}

}  // namespace

Control* Form::Find(std::string_view control_name) const {
  for (Control* control : controls_) {
    if (EqualNoCase(control->name, control_name)) return control;
  }
  return nullptr;
}

std::string Form::Titled(const std::string& banner, const std::string& caption) {
  return banner.empty() ? caption : banner + " · " + caption;
}

std::vector<StatusItem> Form::Band() const {
  std::vector<StatusItem> items = Status();
  if (!banner.empty()) items.insert(items.begin(), {"Aviso", banner, StatusItem::Tone::Missing});
  return items;
}

std::vector<Control*> Form::InLayoutOrder() const {
  std::vector<Control*> found;
  Collect(rows, found);
  return found;
}

}  // namespace tpv::ui
