// What belongs to the machine and not to the store that all tills share: the till's
// number and its cash drawer.
#pragma once

#include <optional>
#include <string_view>

#include "base/variant.h"

namespace tpv {
class Settings;
}

namespace tpv::suite {

inline constexpr std::string_view kTill = "Till";  // these keys:
inline constexpr std::string_view kTillNumber = "Number";
inline constexpr std::string_view kDrawerMethod = "DrawerMethod";
inline constexpr std::string_view kDrawerCodes = "DrawerCodes";

bool IsTillNumber(std::string_view value);    // 1 to 32767
bool IsDrawerMethod(std::string_view value);  // 0 to 4, 0 for no drawer

// What this machine says instead of a parameter of the store; nullopt when it says
// nothing. Throws ObjectError for a value that does not fit.
std::optional<Variant> TillParameter(const Settings& settings, std::string_view parameter);

}  // namespace tpv::suite
