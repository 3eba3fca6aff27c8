// Who or what sold most.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "panel/sums.h"

namespace tpv::panel {

struct Amount {
  std::int32_t id = 0;
  double euros = 0;
};
using Amounts = std::vector<Amount>;  // each id once, in no order

Amounts InEuros(const std::map<std::int32_t, Cents>& cents);
Amounts ArticleAmounts(const Sums& sums);
double Sum(const Amounts& amounts);
const Amount* Find(const Amounts& amounts, std::int32_t id);  // null for none

// The greatest first, as many as a chart names.
Amounts Greatest(const Amounts& amounts);

}  // namespace tpv::panel
