#include "panel/article_sums.h"

#include <algorithm>

namespace tpv::panel {

namespace {

constexpr std::size_t kFewest = 64;
constexpr std::uint32_t kSpread = 2654435769U;  // takes ids that lie close together apart

}  // namespace

// Where the article is or would be. At least half of the slots are free.
std::size_t ArticleSums::SlotOf(std::int32_t article) const {
  const std::size_t mask = slots_.size() - 1;
  const std::uint32_t mixed = static_cast<std::uint32_t>(article) * kSpread;
  std::size_t slot = (mixed ^ (mixed >> 16)) & mask;
  while (slots_[slot] != 0 && entries_[slots_[slot] - 1].article != article) slot = (slot + 1) & mask;
  return slot;
}

void ArticleSums::Grow() {
  slots_.assign(std::max(kFewest, slots_.size() * 2), 0);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    slots_[SlotOf(entries_[i].article)] = static_cast<std::uint32_t>(i + 1);
  }
}

SoldArticle& ArticleSums::Of(std::int32_t article) {
  if (slots_.size() < 2 * (entries_.size() + 1)) Grow();
  std::uint32_t& slot = slots_[SlotOf(article)];
  if (slot == 0) {
    entries_.push_back({article, 0, 0});
    slot = static_cast<std::uint32_t>(entries_.size());
  }
  return entries_[slot - 1];
}

const SoldArticle* ArticleSums::Find(std::int32_t article) const {
  if (slots_.empty()) return nullptr;
  const std::uint32_t slot = slots_[SlotOf(article)];
  return slot == 0 ? nullptr : &entries_[slot - 1];
}

ArticleSums& ArticleSums::operator+=(const ArticleSums& more) {
  if (entries_.empty()) return *this = more;
  for (const SoldArticle& other : more) {
    SoldArticle& sum = Of(other.article);
    sum.sold += other.sold;
    sum.units += other.units;
  }
  return *this;
}

bool ArticleSums::operator==(const ArticleSums& other) const {
  return size() == other.size() && std::all_of(begin(), end(), [&](const SoldArticle& sold) {
           const SoldArticle* same = other.Find(sold.article);
           return same != nullptr && *same == sold;
         });
}

}  // namespace tpv::panel
