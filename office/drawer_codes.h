// What opens the cash drawer, by Par_PCajon.
#pragma once

#include <string>

namespace tpv::office {

// Why `codes` (Par_SCajon) do not serve the method, in Spanish with what is expected; ""
// when they do.
std::string DrawerFault(int method, const std::string& codes);

}  // namespace tpv::office
