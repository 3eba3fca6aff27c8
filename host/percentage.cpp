#include "host/percentage.h"

#include <unistd.h>

#include <iostream>

namespace tpv {

void Percentage::OnPulse(double share) {
  const int percent = static_cast<int>(share * 100);
  if (share < 0 || percent == shown_ || ::isatty(STDERR_FILENO) != 1) return;
  shown_ = percent;
  std::cerr << "\r" << (percent < 100 ? std::to_string(percent) + " % " : "      \r") << std::flush;
}

}  // namespace tpv
