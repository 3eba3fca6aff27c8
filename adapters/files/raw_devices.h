// Output devices by the names that the shop's parameters use.
#pragma once

#include "platform/printer.h"
#include "platform/settings.h"

namespace tpv {

// A name goes through the setting of that name ("LPT1"); without one, "LPT1" is
// the first parallel port, "COM1" the first serial one, and any other name must
// be a target of its own (channel.h).
class RawDevices : public OutputDevices {
 public:
  // The settings outlive the devices.
  explicit RawDevices(const Settings& settings) : settings_(settings) {}
  void Write(std::string_view device, std::string_view bytes) override;

 private:
  std::string TargetOf(std::string_view device) const;

  const Settings& settings_;
};

}  // namespace tpv
