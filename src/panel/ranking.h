// Who or what sold most.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "panel/sums.h"

namespace tpv::panel {

using Amounts = std::map<std::int32_t, double>;  // euros by id

Amounts InEuros(const std::map<std::int32_t, Cents>& cents);
Amounts ArticleAmounts(const Sums& sums);
double Sum(const Amounts& amounts);

// The greatest first, as many as a chart names.
std::vector<std::int32_t> Greatest(const Amounts& amounts);

}  // namespace tpv::panel
