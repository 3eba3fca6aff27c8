#include "panel/ranking.h"

#include <algorithm>
#include <numeric>

#include "panel/euros.h"

namespace tpv::panel {

namespace {

constexpr std::size_t kMostNames = 10;

}  // namespace

Amounts InEuros(const std::map<std::int32_t, Cents>& cents) {
  Amounts euros;
  for (const auto& [id, amount] : cents) euros[id] = Euros(amount);
  return euros;
}

Amounts ArticleAmounts(const Sums& sums) {
  Amounts euros;
  for (const auto& [article, of_article] : sums.by_article) euros[article] = FromMicros(of_article.sold);
  return euros;
}

double Sum(const Amounts& amounts) {
  return std::accumulate(amounts.begin(), amounts.end(), 0.0,
                         [](double sum, const auto& amount) { return sum + amount.second; });
}

std::vector<std::int32_t> Greatest(const Amounts& amounts) {
  std::vector<std::pair<std::int32_t, double>> order(std::min(kMostNames, amounts.size()));
  std::partial_sort_copy(amounts.begin(), amounts.end(), order.begin(), order.end(), [](auto one, auto other) {
    return std::pair(-one.second, one.first) < std::pair(-other.second, other.first);
  });
  std::vector<std::int32_t> ids;
  for (const auto& [id, amount] : order) ids.push_back(id);
  return ids;
}

}  // namespace tpv::panel
