// tpv alone: opens the start window.
#pragma once

namespace tpv {

// Returns the exit status when the window was closed. Throws UsageError in a
// build without windows.
int Start();

}  // namespace tpv
