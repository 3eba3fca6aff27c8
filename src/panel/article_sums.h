// What was sold of each article: of a hundred thousand, added up month by month.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tpv::panel {

// Millionths of a euro: lines may have more decimals than cents.
using Micros = std::int64_t;

struct SoldArticle {
  std::int32_t article = 0;  // its id; 0 for none
  Micros sold = 0;           // with tax
  double units = 0;

  bool operator==(const SoldArticle&) const = default;
};

// A flat table: entries lie one behind the other in the order they came.
class ArticleSums {
 public:
  // The article's own entry, a new one at zero. Valid until the next call.
  SoldArticle& Of(std::int32_t article);
  // Null for what was not sold. Valid until the next entry.
  const SoldArticle* Find(std::int32_t article) const;
  ArticleSums& operator+=(const ArticleSums& more);

  std::size_t size() const { return entries_.size(); }
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

  // The same articles with the same sums, in whatever order they came.
  bool operator==(const ArticleSums& other) const;

 private:
  std::size_t SlotOf(std::int32_t article) const;
  void Grow();

  std::vector<SoldArticle> entries_;
  std::vector<std::uint32_t> slots_;  // an entry's index and one; 0 is free. A power of two of them
};

}  // namespace tpv::panel
