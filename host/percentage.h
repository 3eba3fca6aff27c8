// How far an order of the program is, where somebody looks at it.
#pragma once

#include "platform/pulse.h"

namespace tpv {

// A number that grows on the terminal.
class Percentage : public PulseListener {
  void OnPulse(double share) override;

  int shown_ = -1;
};

}  // namespace tpv
