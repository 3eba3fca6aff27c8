// Where raw bytes go: receipt printers and cash drawers.
#pragma once

#include <string>
#include <string_view>

#include "adapters/files/deadline.h"

namespace tpv {

// A target is "/dev/usb/lp0" (a device file, which is never created),
// "10.0.0.5:9100" or "socket://10.0.0.5:9100" (a printer on the network), or
// "queue:NAME" (a queue of the printing system, past its driver: system_queues.h).
bool IsTarget(std::string_view target);

// "queue:Barra" without the prefix; "" when the target is no queue.
std::string QueueOf(std::string_view target);

// All bytes, in order, as one job. A printer that takes nothing until the deadline is
// given up; one that is slow, as on a serial line, has a second more for each 500 bytes.
// Throws PrintError when any of it fails, UnsurePrint when some of it was taken.
void SendBytes(const std::string& target, std::string_view bytes, const Deadline& deadline);

// The same for a place that the machine's settings do not name: a character device
// (a parallel or serial port) and nothing else, neither a file nor the network.
void SendBytesToPort(const std::string& path, std::string_view bytes, const Deadline& deadline);

}  // namespace tpv
