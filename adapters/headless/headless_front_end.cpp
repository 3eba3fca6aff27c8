#include "adapters/headless/headless_front_end.h"

#include <algorithm>
#include <utility>

#include "base/scoped_value.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr char32_t kEnter = U'\n';

}  // namespace

void HeadlessFrontEnd::ShowModal(ui::Form& form) {
  engine_.Open(form);
  try {
    while (!form.closing && driver_->Step()) {
    }
  } catch (...) {
    engine_.Drop(form);
    throw;
  }
  engine_.Unload(form);
}

ui::Answer HeadlessFrontEnd::Show(const ui::MessageBox& box) {
  engine_.CountOpening();
  const ScopedValue open(box_, &box);
  answer_.reset();
  by_key_ = false;
  driver_->OnBox(box);
  while (!answer_ && driver_->Step()) {
  }
  engine_.BoxClosed(by_key_);
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
  const ScopedValue open(search_, &list);
  searched_.clear();
  search_closed_ = by_key_ = false;
  chosen_.reset();
  while (!search_closed_ && driver_->Step()) {
  }
  search_closed_ = false;
  engine_.BoxClosed(by_key_);
  return std::exchange(chosen_, std::nullopt);
}

void HeadlessFrontEnd::Narrow(std::string_view text) {
  searched_ = text;
  search_->Narrow(searched_);
}

void HeadlessFrontEnd::CloseSearch(std::optional<std::size_t> chosen_row) {
  search_closed_ = true;
  chosen_ = chosen_row;
}

void HeadlessFrontEnd::Strike(char32_t key) {
  if (box_ != nullptr) return StrikeBox(key);
  if (search_ != nullptr) return StrikeSearch(key);
  if (engine_.Top() != nullptr) StrikeForm(key);
}

void HeadlessFrontEnd::StrikeBox(char32_t key) {
  if (answer_) return;  // it is closing
  answer_ = key == kEnter ? box_->default_button : ui::AnswerTo(*box_, key);
  by_key_ = answer_.has_value();
}

void HeadlessFrontEnd::StrikeSearch(char32_t key) {
  if (search_closed_) return;
  if (key != kEnter) {
    AppendCharacter(searched_, key);
    return search_->Narrow(searched_);
  }
  if (search_->Visible().empty()) return;
  by_key_ = true;
  CloseSearch(search_->Visible().front());
}

void HeadlessFrontEnd::StrikeForm(char32_t key) {
  try {
    key == kEnter ? engine_.PressKey(ui::Key::Enter) : engine_.TypeCharacter(key);
  } catch (const ui::ActionRefused&) {
    // A key that has nothing to do where the focus is.
  }
}

}  // namespace tpv
