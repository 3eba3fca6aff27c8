// A variable's other value for as long as a scope lasts, however the scope ends.
#pragma once

#include <utility>

namespace tpv {

template <typename T>
class ScopedValue {
 public:
  ScopedValue(T& variable, T value)
      : variable_(variable), before_(std::exchange(variable, value)) {}
  ~ScopedValue() { variable_ = before_; }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;

 private:
  T& variable_;
  T before_;
};

}  // namespace tpv
