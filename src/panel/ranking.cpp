#include "panel/ranking.h"

#include <algorithm>
#include <numeric>

#include "panel/euros.h"

namespace tpv::panel {

namespace {

constexpr std::size_t kMostNames = 10;

}  // namespace

Amounts InEuros(const std::map<std::int32_t, Cents>& cents) {
  Amounts amounts;
  for (const auto& [id, amount] : cents) amounts.push_back({id, Euros(amount)});
  return amounts;
}

Amounts ArticleAmounts(const Sums& sums) {
  Amounts amounts;
  amounts.reserve(sums.by_article.size());
  for (const SoldArticle& sold : sums.by_article) amounts.push_back({sold.article, FromMicros(sold.sold)});
  return amounts;
}

double Sum(const Amounts& amounts) {
  return std::accumulate(amounts.begin(), amounts.end(), 0.0,
                         [](double sum, const Amount& amount) { return sum + amount.euros; });
}

const Amount* Find(const Amounts& amounts, std::int32_t id) {
  const auto found = std::find_if(amounts.begin(), amounts.end(), [&](const Amount& amount) { return amount.id == id; });
  return found == amounts.end() ? nullptr : &*found;
}

Amounts Greatest(const Amounts& amounts) {
  Amounts greatest(std::min(kMostNames, amounts.size()));
  std::partial_sort_copy(amounts.begin(), amounts.end(), greatest.begin(), greatest.end(),
                         [](const Amount& one, const Amount& other) {
                           return std::pair(-one.euros, one.id) < std::pair(-other.euros, other.id);
                         });
  return greatest;
}

}  // namespace tpv::panel
