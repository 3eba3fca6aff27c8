#include "adapters/files/raw_devices.h"

#include "adapters/files/channel.h"
#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "base/text.h"

namespace tpv {

namespace {

// "LPT1" is /dev/lp0; "" when the name is no port.
std::string Port(std::string_view name) {
  const bool numbered = name.size() == 4 && name[3] >= '1' && name[3] <= '9';
  if (!numbered) return "";
  const char number = static_cast<char>(name[3] - 1);
  if (StartsWithNoCase(name, "LPT")) return std::string("/dev/lp") + number;
  if (StartsWithNoCase(name, "COM")) return std::string("/dev/ttyS") + number;
  return "";
}

}  // namespace

void RawDevices::Write(std::string_view device, std::string_view bytes) {
  try {
    std::string name = Trim(device);
    if (name.ends_with(':') && name.size() == 5) name.pop_back();
    const std::string mapped = settings_.Read(kTpv, kDevices, name);
    if (!mapped.empty()) return SendBytes(mapped, bytes);
    const std::string port = Port(name);
    SendBytesToPort(port.empty() ? name : port, bytes);
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

}  // namespace tpv
