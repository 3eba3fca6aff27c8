// Stores as version 3 of the program left them: the catalogue in a file of its own.
#pragma once

#include <string>

namespace tpv {

// Turns a store that nobody has open into one of version 3, with the same rows.
void MakeOlder(const std::string& path);

}  // namespace tpv
