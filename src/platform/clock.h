// The machine's clock, local and universal time.
#pragma once

#include "base/date_time.h"

namespace tpv {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() const = 0;
  // Universal time of the same moment; a clock that stands in no zone has it too.
  virtual DateTime Utc() const { return Now(); }
};

}  // namespace tpv
