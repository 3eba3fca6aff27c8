#include "screen/search_list.h"

#include <numeric>

#include "base/text.h"

namespace tpv::ui {

SearchList::SearchList(const SearchRequest& request)
    : request_(request), visible_(request.rows.size()), folded_(request.rows.size()) {
  std::iota(visible_.begin(), visible_.end(), std::size_t{0});
}

bool SearchList::Holds(std::size_t row, const std::string& folded) const {
  std::string& text = folded_[row];
  if (text.empty()) {
    for (const std::size_t column : request_.shown_columns) {
      text += FoldForSearch(request_.rows[row][column].ToText()) + '\n';
    }
  }
  return text.find(folded) != std::string::npos;
}

void SearchList::Narrow(std::string_view text) {
  const std::string folded = FoldForSearch(text);
  if (!folded.starts_with(narrowed_by_)) {
    visible_.resize(request_.rows.size());
    std::iota(visible_.begin(), visible_.end(), std::size_t{0});
  }
  std::erase_if(visible_, [&](std::size_t row) { return !Holds(row, folded); });
  narrowed_by_ = folded;
}

std::optional<std::size_t> SearchList::First(std::string_view text) const {
  const std::string folded = FoldForSearch(text);
  for (const std::size_t row : visible_) {
    if (Holds(row, folded)) return row;
  }
  return std::nullopt;
}

}  // namespace tpv::ui
