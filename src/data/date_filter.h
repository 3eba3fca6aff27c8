// The optional period of a list, from its two date fields.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

// " AND Cav_fecha BETWEEN '… 00:00:00' AND '… 23:59:00'", one side of it when
// the other field is empty, "" when both are. Throws std::invalid_argument for a
// text that is no date.
std::string DateFilter(std::string_view column, std::string_view from, std::string_view to);

}  // namespace tpv
