#include "office/import/repeated_keys.h"

#include <algorithm>
#include <functional>

#include "base/text.h"

namespace tpv::office {

std::string FoldKey(const std::string& key) { return FoldCase(TrimRight(key)); }

void RepeatedKeys::Note(const std::string& folded) {
  prints_.push_back(std::hash<std::string>{}(folded));
}

void RepeatedKeys::Close() {
  std::sort(prints_.begin(), prints_.end());
  for (auto at = prints_.begin(); at != prints_.end();) {
    const auto next = std::upper_bound(at, prints_.end(), *at);
    if (next - at > 1) suspects_.insert(*at);
    at = next;
  }
  prints_ = {};
}

long RepeatedKeys::Before(const std::string& folded, long line) {
  if (!suspects_.contains(std::hash<std::string>{}(folded))) return 0;
  const auto [place, first] = seen_.emplace(folded, line);
  return first ? 0 : place->second;
}

}  // namespace tpv::office
