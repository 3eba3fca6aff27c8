// Until when something outside the till may take.
#pragma once

#include <algorithm>
#include <chrono>

namespace tpv {

// What a printer or a drawer gets, however it behaves.
inline constexpr std::chrono::milliseconds kPaperPatience{4000};

class Deadline {
 public:
  using Clock = std::chrono::steady_clock;
  explicit Deadline(std::chrono::milliseconds from_now) : end_(Clock::now() + from_now) {}

  // Never negative.
  std::chrono::milliseconds Left() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
  }
  bool Passed() const { return Left().count() == 0; }
  friend Deadline Sooner(const Deadline& one, const Deadline& other) {
    return one.end_ < other.end_ ? one : other;
  }

 private:
  Clock::time_point end_;
};

}  // namespace tpv
