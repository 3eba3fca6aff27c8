// Per-user settings, kept by application, section and key.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

class Settings {
 public:
  virtual ~Settings() = default;
  // "" when there is no such value.
  virtual std::string Read(std::string_view application, std::string_view section,
                           std::string_view key) const = 0;
  virtual void Write(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) = 0;
};

}  // namespace tpv
