// How a call of a host ends: a status, and a text that its thread can ask for.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "include/zrtpv.h"

namespace tpv::interface {

// What the interface itself refuses.
class Fault : public std::runtime_error {
 public:
  Fault(zrtpv_status status, const std::string& text) : std::runtime_error(text), status_(status) {}
  zrtpv_status status() const { return status_; }

 private:
  zrtpv_status status_;
};

// Keeps the thread's last result and returns it.
std::int32_t Keep(zrtpv_status status, const char* text) noexcept;
// Keeps what the exception under way means for a host.
std::int32_t KeepException() noexcept;

const char* LastText() noexcept;
std::int32_t LastStatus() noexcept;

// What a callback said with zrtpv_fail; "" when it said nothing.
void SetCallbackText(const char* text) noexcept;
std::string TakeCallbackText();

// Runs the work of one exported function; no exception leaves it.
template <typename Work>
std::int32_t Answer(Work work) noexcept {
  try {
    work();
    return Keep(ZRTPV_OK, "");
  } catch (...) {
    return KeepException();
  }
}

template <typename T>
T& Required(T* pointer, const char* what) {
  if (pointer == nullptr) throw Fault(ZRTPV_E_ARGUMENT, std::string("Falta ") + what);
  return *pointer;
}

// A number of its own for every thread that ever was: the system's are used again.
std::uint64_t ThisThread() noexcept;

}  // namespace tpv::interface
