#include "host/day_option.h"

#include <algorithm>

#include "host/play.h"

namespace tpv {

std::optional<DateTime> TakeDayOption(std::vector<std::string>& arguments, const char* option) {
  const auto at = std::find(arguments.begin(), arguments.end(), option);
  if (at == arguments.end()) return std::nullopt;
  const auto day = at + 1 == arguments.end() ? std::nullopt : ParseDayFirst(*(at + 1));
  if (!day) throw UsageError(std::string(option) + ": se espera una fecha, dd/mm/aaaa");
  arguments.erase(at, at + 2);
  return day;
}

}  // namespace tpv
