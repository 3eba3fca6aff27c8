#include "screen/search_list.h"

#include <algorithm>
#include <numeric>

#include "base/mask.h"
#include "base/text.h"
#include "platform/ui/list_order.h"

namespace tpv::ui {

SearchList::SearchList(const SearchRequest& request)
    : request_(request), folded_(request.rows.size()) {
  ShowAll();
}

const std::string& SearchList::Folded(std::size_t row) const {
  std::string& text = folded_[row];
  if (!text.empty()) return text;
  for (std::size_t column = 0; column < request_.shown_columns.size(); ++column) {
    if (request_.IsFigure(column)) continue;
    text += FoldForSearch(request_.rows[row][request_.shown_columns[column]].ToText()) + '\n';
  }
  return text;
}

void SearchList::Narrow(std::string_view text) {
  words_ = text;
  const std::string folded = FoldForSearch(text);
  // Whoever types on only asks for more.
  const bool all = !folded.starts_with(narrowed_by_);
  if (all) ShowAll();
  const std::vector<std::string> words = Split(folded, " ");
  std::erase_if(visible_, [&](std::size_t row) {
    const std::string& held = Folded(row);
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
      return held.find(word) == std::string::npos;
    });
  });
  narrowed_by_ = folded;
  if (all) Order();
}

void SearchList::ShowAll() {
  visible_.resize(request_.rows.size());
  std::iota(visible_.begin(), visible_.end(), std::size_t{0});
}

void SearchList::Order() {
  if (!sorted_by_) return;
  const std::size_t at = request_.shown_columns[*sorted_by_];
  visible_ = SortedBy(std::move(visible_), descending_,
                      [&](std::size_t row) -> const Variant& { return request_.rows[row][at]; });
}

void SearchList::SortBy(std::size_t column) {
  if (column >= request_.shown_columns.size()) return;
  const bool again = sorted_by_ == column;
  const bool back = again && descending_;
  sorted_by_ = back ? std::nullopt : std::optional(column);
  descending_ = again && !descending_;
  std::sort(visible_.begin(), visible_.end());
  Order();
}

std::optional<std::size_t> SearchList::First(std::string_view text) const {
  const std::string folded = FoldForSearch(text);
  for (const std::size_t row : visible_) {
    if (Folded(row).find(folded) != std::string::npos) return row;
  }
  return std::nullopt;
}

std::string SearchList::Cell(std::size_t row, std::size_t column) const {
  const Variant& value = request_.rows[row][request_.shown_columns[column]];
  if (!request_.IsFigure(column)) return value.ToText();
  return value.IsNull() ? std::string() : FormatNumber(value.ToDouble(), request_.masks[column]);
}

std::string SearchList::CountText() const {
  return std::to_string(visible_.size()) + " de " + std::to_string(request_.rows.size()) +
         " coinciden";
}

}  // namespace tpv::ui
