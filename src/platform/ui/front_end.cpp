#include "platform/ui/front_end.h"

#include <algorithm>

namespace tpv::ui {

Answer Harmless(const MessageBox& box) {
  for (const Answer answer : {Answer::Cancel, Answer::No}) {
    const auto& buttons = box.buttons;
    if (std::find(buttons.begin(), buttons.end(), answer) != buttons.end()) return answer;
  }
  return Answer::Ok;
}

}  // namespace tpv::ui
