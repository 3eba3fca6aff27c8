// A search dialog's list, narrowed as the operator types.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/front_end.h"

namespace tpv::ui {

class SearchList {
 public:
  // The request must outlive the list.
  explicit SearchList(SearchRequest& request);

  // Reads a few of the rows that the request does not have yet; false when it has all of
  // them. Whoever sorts needs all. Throws what the reading throws.
  bool ReadOn();
  void ReadAll();
  bool HasAll() const { return !request_.read_on; }

  // Keeps the rows that hold every word in a shown column that is no figure, in any
  // order and whatever their case and accents.
  void Narrow(std::string_view text);
  // By a shown column; once more the other way round, a third time as asked for.
  void SortBy(std::size_t column);
  std::optional<std::size_t> sorted_by() const { return sorted_by_; }
  bool descending() const { return descending_; }
  const std::string& words() const { return words_; }  // that it was narrowed to
  // Rows now shown, as indices into the request's rows.
  const std::vector<std::uint32_t>& Visible() const { return visible_; }
  // The first visible row that holds the text in one piece.
  std::optional<std::size_t> First(std::string_view text) const;
  // What a row shows in a shown column.
  std::string Cell(std::size_t row, std::size_t column) const;
  // "12 de 200 coinciden"; says so when not all has been read.
  std::string CountText() const;
  const SearchRequest& request() const { return request_; }

 private:
  void ShowAll();
  void Order();
  const std::string& Folded(std::size_t row) const;
  bool Holds(std::size_t row) const;

  SearchRequest& request_;
  std::vector<std::uint32_t> visible_;
  mutable std::string folded_;  // what is searched of the row last looked at
  std::string words_;
  std::string narrowed_by_;  // the same as they are looked for
  std::vector<std::string> sought_;
  std::optional<std::size_t> sorted_by_;
  bool descending_ = false;
};

}  // namespace tpv::ui
