// The machine's clock.
#pragma once

#include <chrono>

#include "platform/clock.h"

namespace tpv {

class SystemClock : public Clock {
 public:
  DateTime Now() const override { return ToLocal(std::chrono::system_clock::now()); }
  DateTime Utc() const override { return ToUtc(std::chrono::system_clock::now()); }
};

}  // namespace tpv
