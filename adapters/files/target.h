// Bytes for a receipt printer or a drawer, whether it hangs on a device, the network or a
// queue of the printing system.
#pragma once

#include <string>
#include <string_view>

#include "adapters/files/system_queues.h"

namespace tpv {

// Returns why they wait in their queue, "" when they do not. Throws PrintError when the
// target (channel.h) does not take them.
std::string SendToTarget(const std::string& target, std::string_view title,
                         std::string_view bytes, const Deadline& deadline);

// Throws PrintError when a document without a title would have to wait: a drawer that
// opens when somebody mends the printer would stand open for all.
void RefuseToWait(const SystemQueue& queue, std::string_view title);

}  // namespace tpv
