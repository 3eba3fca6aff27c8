#include "adapters/files/display.h"

#include <cstdlib>
#include <initializer_list>

namespace tpv {

bool HasDisplay() {
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* display = std::getenv(variable);
    if (display != nullptr && *display != '\0') return true;
  }
  return false;
}

}  // namespace tpv
