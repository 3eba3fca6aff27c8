#include "screen/access_keys.h"

#include <set>
#include <vector>

#include "base/text.h"

namespace tpv::ui {

namespace {

bool IsLetter(char32_t folded) {
  return (folded >= U'a' && folded <= U'z') || (folded >= U'0' && folded <= U'9');
}

bool IsPressed(const Control& control) {
  return dynamic_cast<const Button*>(&control) != nullptr ||
         dynamic_cast<const CheckBox*>(&control) != nullptr ||
         dynamic_cast<const OptionButton*>(&control) != nullptr;
}

}  // namespace

char32_t MarkedLetter(std::string_view caption) {
  const std::size_t mark = caption.find('&');
  if (mark == std::string_view::npos || mark + 1 >= caption.size()) return 0;
  std::size_t at = 0;
  return NextCharacter(FoldCase(caption.substr(mark + 1)), at);
}

void GiveAccessKeys(Form& form) {
  std::set<char32_t> taken;
  std::vector<Control*> waiting[2];  // what is pressed, then what is typed into
  for (Control* control : form.InLayoutOrder()) {
    if (!control->CanFocus()) continue;
    if (const char32_t marked = MarkedLetter(control->caption); marked != 0) {
      taken.insert(marked);
    } else if (control->tab_stop) {
      waiting[IsPressed(*control) ? 0 : 1].push_back(control);
    }
  }
  for (const auto& controls : waiting) {
    for (Control* control : controls) {
      const std::string folded = FoldCase(control->caption);
      for (std::size_t at = 0; at < folded.size();) {
        const char32_t letter = NextCharacter(folded, at);
        if (!IsLetter(letter) || !taken.insert(letter).second) continue;
        control->access_key = letter;
        break;
      }
    }
  }
}

std::string MarkedCaption(const Control& control) {
  if (control.access_key == 0 || MarkedLetter(control.caption) != 0) return control.caption;
  for (std::size_t at = 0; at < control.caption.size();) {
    const std::size_t begin = at;
    std::string letter;
    AppendCharacter(letter, NextCharacter(control.caption, at));
    std::size_t first = 0;
    if (NextCharacter(FoldCase(letter), first) != control.access_key) continue;
    return control.caption.substr(0, begin) + "&" + control.caption.substr(begin);
  }
  return control.caption;
}

}  // namespace tpv::ui
