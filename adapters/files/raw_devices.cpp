#include "adapters/files/raw_devices.h"

#include "adapters/files/channel.h"
#include "adapters/files/private_files.h"
#include "adapters/files/printer_setup.h"
#include "adapters/files/setting_names.h"
#include "adapters/files/target.h"
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
  std::string name = Trim(device);
  if (name.ends_with(':') && name.size() == 5) name.pop_back();
  std::string mapped;
  try {
    mapped = settings_.Read(kTpv, kDevices, name);
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
  const std::string kept(bytes);
  if (!mapped.empty()) {
    return HandOver(mapped, [mapped, kept](const Deadline& deadline) {
      SendToTarget(mapped, {}, kept, deadline);
    });
  }
  const std::string port = Port(name).empty() ? name : Port(name);
  if (!port.starts_with('/')) {
    throw PrintError("«" + port + "» no es un puerto de esta máquina ni está en sus ajustes");
  }
  HandOver(port, [port, kept](const Deadline& deadline) { SendBytesToPort(port, kept, deadline); });
}

void RawDevices::HandOver(const std::string& target, WorkLines::Job job) {
  lines_.Add(LineOf(target), [job = std::move(job)](const Deadline& deadline) {
    try {
      job(deadline);
    } catch (const std::exception&) {
      // An absent device leaves the drawer closed and reports nothing.
    }
  });
}

}  // namespace tpv
