#include "platform/settings.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace tpv {

std::optional<bool> ReadSwitch(std::string_view value) {
  constexpr std::array<std::string_view, 6> kOn = {"si", "sí", "on", "yes", "true", "1"};
  constexpr std::array<std::string_view, 5> kOff = {"no", "off", "false", "0", ""};
  const auto is = [&](std::string_view word) { return EqualNoCase(Trim(value), word); };
  if (std::any_of(kOn.begin(), kOn.end(), is)) return true;
  if (std::any_of(kOff.begin(), kOff.end(), is)) return false;
  return std::nullopt;
}

bool IsSwitchedOn(const Settings& settings, std::string_view application, std::string_view section,
                  std::string_view key) {
  return ReadSwitch(settings.Read(application, section, key)).value_or(false);
}

}  // namespace tpv
