// Where raw bytes go: receipt printers and cash drawers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

// A target is "/dev/usb/lp0" (a device file, which is never created),
// "10.0.0.5:9100" or "socket://10.0.0.5:9100" (a printer on the network), or
// "queue:NAME" (a queue of the printing system, past its driver).
bool IsTarget(std::string_view target);

// All bytes, in order, as one job; a printer that is off holds the till for a
// few seconds at most. Throws PrintError when any of it fails.
void SendBytes(const std::string& target, std::string_view bytes);

// The same for a place that the machine's settings do not name: a character device
// (a parallel or serial port) and nothing else, neither a file nor the network.
void SendBytesToPort(const std::string& path, std::string_view bytes);

// A document for the queue's driver ("-o" options as lp takes them), or raw bytes
// when one of the options is "raw". Throws PrintError.
void SendToQueue(const std::string& queue, const std::vector<std::string>& options,
                 std::string_view document);

}  // namespace tpv
