// tpv alone: opens the start window.
#pragma once

#include <string>

namespace tpv {

// Returns the exit status when the window was closed. With the name of a file, a
// picture of the window goes there as PNG and the window closes at once. Throws
// UsageError in a build without windows.
int Start(const std::string& picture = {});

}  // namespace tpv
