#include "adapters/headless/headless_front_end.h"

#include <algorithm>
#include <utility>

#include "base/scoped_value.h"
#include "base/text.h"
#include "screen/engine_lists.h"
#include "screen/searched_form.h"

namespace tpv {

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
  driver_->OnBox(box);
  while (!answer_ && driver_->Step()) {
  }
  engine_.BoxClosed(false);
  return std::exchange(answer_, std::nullopt).value_or(Harmless(box));
}

void HeadlessFrontEnd::AnswerBox(ui::Answer answer) {
  const auto& buttons = box_->buttons;
  if (std::find(buttons.begin(), buttons.end(), answer) == buttons.end()) {
    throw ui::ActionRefused("el mensaje no tiene ese botón");
  }
  answer_ = answer;
}

std::optional<std::size_t> HeadlessFrontEnd::Search(ui::SearchRequest& request) {
  engine_.CountOpening();
  ui::SearchList list(request);
  list.ReadAll();
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

void HeadlessFrontEnd::Notify(const Notice& notice) {
  const std::lock_guard lock(mutex_);
  notices_.push_back(notice);
}

std::vector<Notice> HeadlessFrontEnd::TakeNotices() {
  const std::lock_guard lock(mutex_);
  return std::exchange(notices_, {});
}

std::string HeadlessFrontEnd::NoticesText() {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const Notice& notice : notices_) text += notice.text + "\n";
  return text;
}

void HeadlessFrontEnd::Narrow(std::string_view text) {
  searched_ = text;
  search_->Narrow(searched_);
}

void HeadlessFrontEnd::ChooseSearchMenu(std::string_view entry) {
  ui::SearchList& list = *search_;
  ui::SearchedForm form(list, engine_.Top());
  const auto sort = [&list](int column) { list.SortBy(static_cast<std::size_t>(column)); };
  const ScopedValue<ui::SearchList*> aside(search_, nullptr);
  for (const ui::MenuEntry& offered : ui::ListMenu(form.found, sort)) {
    if (EqualNoCase(offered.name, entry)) return offered.click();
  }
  throw ui::ActionRefused("el menú no tiene " + std::string(entry));
}

void HeadlessFrontEnd::ExportMatches(const std::string& path) {
  ui::SearchedForm form(*search_, engine_.Top());
  if (!form.GivesListsAway()) throw ui::ActionRefused("la búsqueda no exporta sus filas");
  const ScopedValue<ui::SearchList*> aside(search_, nullptr);
  form.ExportList(form.found, path);
}

void HeadlessFrontEnd::CloseSearch(std::optional<std::size_t> chosen_row) {
  search_closed_ = true;
  chosen_ = chosen_row;
}

void HeadlessFrontEnd::Scan(std::string_view code) {
  if (box_ != nullptr) return engine_.ScanUnanswered();
  if (search_ != nullptr) return ScanIntoSearch(code);
  if (engine_.Top() != nullptr) engine_.Scan(code);
}

// The one row that holds the code is meant; among several the operator chooses.
void HeadlessFrontEnd::ScanIntoSearch(std::string_view code) {
  if (search_closed_) return;
  Narrow(searched_ + std::string(code));
  if (search_->Visible().size() != 1) return engine_.ScanUnanswered();
  by_key_ = true;
  CloseSearch(search_->Visible().front());
}

}  // namespace tpv
