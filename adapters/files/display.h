// Whether the user has a screen on which something can be shown.
#pragma once

namespace tpv {

bool HasDisplay();

}  // namespace tpv
