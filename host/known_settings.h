// The machine's settings by the names that a technician gives them ("Mail.Server"), and
// what each may hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

class Settings;

struct Setting {
  const char* section;
  std::string key;
  bool (*fits)(const std::string& value);
  const char* wanted;  // in Spanish: what is accepted

  bool Is(std::string_view of_section, std::string_view name) const { return section == of_section && name == key; }
  bool IsSecret() const { return key == "Password"; }
};

// Regardless of case. Throws UsageError for an unknown name.
Setting FindSetting(const std::string& name);
// All that have settings, in the order to show.
std::vector<std::string_view> SettingSections();

// Why the value does not fit, in Spanish; "" when it does. The rest throw as FindSetting does.
std::string SettingFault(const std::string& name, const std::string& value);
// What `tpv config set` does. Throws UsageError for a value that does not fit.
void ChangeSetting(Settings& settings, const std::string& name, const std::string& value);
void RemoveSetting(Settings& settings, const std::string& name);
std::string ReadSetting(const Settings& settings, const std::string& name);

// The setting without which no mail can be sent; "" when none is missing.
std::string MissingMailSetting(const Settings& settings);

}  // namespace tpv
