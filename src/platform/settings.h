// Per-user settings, kept by application, section and key.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tpv {

class Settings {
 public:
  virtual ~Settings() = default;
  // "" when there is no such value.
  virtual std::string Read(std::string_view application, std::string_view section,
                           std::string_view key) const = 0;
  virtual void Write(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) = 0;
  // The keys of a section that have a value, in the order in which they are kept.
  virtual std::vector<std::string> Keys(std::string_view application, std::string_view section) const = 0;
};

// A setting that is on or off, as people write it; nullopt for anything else.
std::optional<bool> ReadSwitch(std::string_view value);
// Whether a setting is there and on.
bool IsSwitchedOn(const Settings& settings, std::string_view application, std::string_view section,
                  std::string_view key);

}  // namespace tpv
