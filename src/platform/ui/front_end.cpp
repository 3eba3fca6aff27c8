#include "platform/ui/front_end.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::ui {

std::string_view CaptionOf(Answer answer) {
  switch (answer) {
    case Answer::Yes:
      return "&Sí";
    case Answer::No:
      return "&No";
    case Answer::Cancel:
      return "&Cancelar";
    default:
      return "&Aceptar";
  }
}

std::optional<Answer> AnswerTo(const MessageBox& box, char32_t letter) {
  std::string typed;
  AppendCharacter(typed, letter);
  for (const Answer answer : box.buttons) {
    if (EqualNoCase(typed, CaptionOf(answer).substr(1, 1))) return answer;
  }
  return std::nullopt;
}

Answer Harmless(const MessageBox& box) {
  for (const Answer answer : {Answer::Cancel, Answer::No}) {
    const auto& buttons = box.buttons;
    if (std::find(buttons.begin(), buttons.end(), answer) != buttons.end()) return answer;
  }
  return Answer::Ok;
}

}  // namespace tpv::ui
