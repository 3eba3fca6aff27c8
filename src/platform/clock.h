// The machine's clock, local time.
#pragma once

#include "base/date_time.h"

namespace tpv {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() const = 0;
};

}  // namespace tpv
