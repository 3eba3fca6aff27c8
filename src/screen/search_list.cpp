#include "screen/search_list.h"

#include <algorithm>
#include <numeric>

#include "base/mask.h"
#include "base/text.h"
#include "platform/ui/list_order.h"

namespace tpv::ui {

SearchList::SearchList(SearchRequest& request) : request_(request) { ShowAll(); }

bool SearchList::ReadOn() {
  const std::size_t before = request_.rows.size();
  if (request_.read_on && !request_.read_on()) request_.read_on = nullptr;
  for (std::size_t row = before; row < request_.rows.size(); ++row) {
    if (Holds(row)) visible_.push_back(static_cast<std::uint32_t>(row));
  }
  return !HasAll();
}

void SearchList::ReadAll() {
  while (ReadOn()) {
  }
}

const std::string& SearchList::Folded(std::size_t row) const {
  const PackedRow values = request_.rows[row];
  folded_.clear();
  for (std::size_t column = 0; column < request_.shown_columns.size(); ++column) {
    if (request_.IsFigure(column)) continue;
    const std::size_t at = request_.shown_columns[column];
    const auto text = values.HeldText(at);
    text ? FoldForSearch(*text, folded_) : FoldForSearch(values[at].ToText(), folded_);
    folded_ += '\n';
  }
  return folded_;
}

bool SearchList::Holds(std::size_t row) const {
  if (sought_.empty()) return true;
  const std::string& held = Folded(row);
  return std::all_of(sought_.begin(), sought_.end(),
                     [&](const std::string& word) { return held.find(word) != std::string::npos; });
}

void SearchList::Narrow(std::string_view text) {
  words_ = text;
  const std::string folded = FoldForSearch(text);
  // Whoever types on only asks for more.
  const bool all = !folded.starts_with(narrowed_by_);
  if (all) ShowAll();
  sought_ = Split(folded, " ");
  std::erase(sought_, "");
  std::erase_if(visible_, [&](std::uint32_t row) { return !Holds(row); });
  narrowed_by_ = folded;
  if (all) Order();
}

void SearchList::ShowAll() {
  visible_.resize(request_.rows.size());
  std::iota(visible_.begin(), visible_.end(), std::uint32_t{0});
}

void SearchList::Order() {
  if (!sorted_by_) return;
  const std::size_t at = request_.shown_columns[*sorted_by_];
  visible_ = SortedBy(std::move(visible_), descending_, [&](std::size_t row) { return request_.rows[row][at]; });
}

void SearchList::SortBy(std::size_t column) {
  if (column >= request_.shown_columns.size()) return;
  ReadAll();
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
  const Variant value = request_.rows[row][request_.shown_columns[column]];
  if (!request_.IsFigure(column)) return value.ToText();
  return value.IsNull() ? std::string() : FormatNumber(value.ToDouble(), request_.masks[column]);
}

std::string SearchList::CountText() const {
  return std::to_string(visible_.size()) + " de " + std::to_string(request_.rows.size()) +
         " coinciden" + (HasAll() ? "" : ", leyendo…");
}

}  // namespace tpv::ui
