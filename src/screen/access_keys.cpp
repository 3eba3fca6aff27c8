#include "screen/access_keys.h"

#include <map>
#include <vector>

#include "base/text.h"

namespace tpv::ui {

namespace {

bool IsLetter(char32_t folded) {
  return (folded >= U'a' && folded <= U'z') || (folded >= U'0' && folded <= U'9');
}

// The first character that is `wanted`; 0 for none.
template <typename Wanted>
char32_t FirstIn(std::string_view folded, const Wanted& wanted) {
  for (std::size_t at = 0; at < folded.size();) {
    const char32_t letter = NextCharacter(folded, at);
    if (wanted(letter)) return letter;
  }
  return 0;
}

}  // namespace

char32_t MarkedLetter(std::string_view caption) {
  const std::size_t mark = caption.find('&');
  if (mark == std::string_view::npos || mark + 1 >= caption.size()) return 0;
  std::size_t at = 0;
  return NextCharacter(FoldCase(caption.substr(mark + 1)), at);
}

void GiveAccessKeys(Form& form) {
  std::map<char32_t, bool> taken;    // and whether only fields have it
  std::vector<Control*> waiting[2];  // what is pressed, then what is typed into
  for (Control* control : form.InLayoutOrder()) {
    if (!control->CanFocus()) continue;
    if (const char32_t marked = MarkedLetter(control->caption); marked != 0) {
      taken[marked] = false;
    } else if (control->tab_stop && !control->caption.empty()) {
      waiting[control->IsPressed() ? 0 : 1].push_back(control);
    }
  }
  for (const auto& controls : waiting) {
    for (Control* control : controls) {
      const bool field = !control->IsPressed();
      const auto free = [&](char32_t letter) { return IsLetter(letter) && !taken.contains(letter); };
      const auto shared = [&](char32_t letter) { return field && taken.contains(letter) && taken[letter]; };
      const std::string folded = FoldCase(control->caption);
      char32_t key = FirstIn(folded, free);
      if (key == 0) key = FirstIn(folded, shared);
      if (key == 0) key = FirstIn("1234567890abcdefghijklmnopqrstuvwxyz", free);
      control->access_key = key;
      if (key != 0) taken.try_emplace(key, field);
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
  std::string sign;
  AppendCharacter(sign, control.access_key);
  return control.caption + " (&" + sign + ")";
}

}  // namespace tpv::ui
