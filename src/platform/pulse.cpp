#include "platform/pulse.h"

namespace tpv {

namespace {
thread_local PulseListener* listener = nullptr;
}

PulseListener::PulseListener() : before_(listener) { listener = this; }
PulseListener::~PulseListener() { listener = before_; }

bool IsPulseHeard() { return listener != nullptr; }

void Pulse(double share) {
  if (listener != nullptr) listener->OnPulse(share);
}

bool AreFirstRowsWanted() { return listener != nullptr && listener->WantsFirstRows(); }

void ShowFirstRows() {
  if (listener != nullptr) listener->ShowFirstRows();
}

}  // namespace tpv
