#include "data/date_filter.h"

#include "data/sql_text.h"

namespace tpv {

std::string DateFilter(std::string_view column, std::string_view from, std::string_view to) {
  const std::string start = " AND " + std::string(column);
  const auto first = [&] { return "'" + sql::DateText(from) + " 00:00:00'"; };
  const auto last = [&] { return "'" + sql::DateText(to) + " 23:59:00'"; };
  if (!from.empty() && !to.empty()) return start + " BETWEEN " + first() + " AND " + last();
  if (!from.empty()) return start + " >= " + first();
  return to.empty() ? std::string() : start + " <= " + last();
}

}  // namespace tpv
