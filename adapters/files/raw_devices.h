// Output devices by the names that the shop's parameters use.
#pragma once

#include "adapters/files/work_lines.h"
#include "platform/printer.h"
#include "platform/settings.h"

namespace tpv {

// The setting of that name ("LPT1") says where its bytes go: any target (channel.h).
// Without one, "LPT1" is the first parallel port, "COM1" the first serial one, and
// any other name must be the path of such a port: who writes the shop's parameters
// sends no till to a file or an address.
class RawDevices : public OutputDevices {
 public:
  // Both outlive the devices.
  RawDevices(const Settings& settings, WorkLines& lines) : settings_(settings), lines_(lines) {}
  // Hands the bytes over to the device's line of work and goes on.
  void Write(std::string_view device, std::string_view bytes) override;

 private:
  void HandOver(const std::string& target, WorkLines::Job job);

  const Settings& settings_;
  WorkLines& lines_;
};

}  // namespace tpv
