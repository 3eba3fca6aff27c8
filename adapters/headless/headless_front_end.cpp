#include "adapters/headless/headless_front_end.h"

#include <algorithm>
#include <utility>

namespace tpv {

void HeadlessFrontEnd::ShowModal(ui::Form& form) {
  engine_.Open(form);
  while (!form.closing && driver_->Step()) {
  }
  engine_.Unload(form);
}

ui::Answer HeadlessFrontEnd::Show(const ui::MessageBox& box) {
  engine_.CountOpening();
  const ui::MessageBox* below = std::exchange(box_, &box);
  answer_.reset();
  driver_->OnBox(box);
  while (!answer_ && driver_->Step()) {
  }
  box_ = below;
  return std::exchange(answer_, std::nullopt).value_or(Harmless(box));
}

void HeadlessFrontEnd::AnswerBox(ui::Answer answer) {
  const auto& buttons = box_->buttons;
  if (std::find(buttons.begin(), buttons.end(), answer) == buttons.end()) {
    throw ui::ActionRefused("el mensaje no tiene ese botón");
  }
  answer_ = answer;
}

std::optional<std::size_t> HeadlessFrontEnd::Search(const ui::SearchRequest& request) {
  engine_.CountOpening();
  ui::SearchList list(request);
  ui::SearchList* below = std::exchange(search_, &list);
  search_closed_ = false;
  chosen_.reset();
  while (!search_closed_ && driver_->Step()) {
  }
  search_ = below;
  search_closed_ = false;
  return std::exchange(chosen_, std::nullopt);
}

void HeadlessFrontEnd::CloseSearch(std::optional<std::size_t> chosen_row) {
  search_closed_ = true;
  chosen_ = chosen_row;
}

}  // namespace tpv
