// A search dialog's list, narrowed as the operator types.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/front_end.h"

namespace tpv::ui {

class SearchList {
 public:
  // The request must outlive the list.
  explicit SearchList(const SearchRequest& request);

  // Keeps the rows that hold the text in a shown column, whatever its case and
  // accents.
  void Narrow(std::string_view text);
  // Rows now shown, as indices into the request's rows.
  const std::vector<std::size_t>& Visible() const { return visible_; }
  // The first visible row that holds the text in a shown column.
  std::optional<std::size_t> First(std::string_view text) const;
  const SearchRequest& request() const { return request_; }

 private:
  bool Holds(std::size_t row, const std::string& folded) const;

  const SearchRequest& request_;
  std::vector<std::size_t> visible_;
  mutable std::vector<std::string> folded_;  // shown columns of each row, made on first use
  std::string narrowed_by_;
};

}  // namespace tpv::ui
