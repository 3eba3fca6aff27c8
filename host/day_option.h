// Days of an order of the program: --from dd/mm/aaaa.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/date_time.h"

namespace tpv {

// Takes the option and its day out of the arguments; nullopt when it is not there. Throws
// UsageError for what is no day.
std::optional<DateTime> TakeDayOption(std::vector<std::string>& arguments, const char* option);

}  // namespace tpv
