#include "screen/scan_burst.h"

#include "base/text.h"

namespace tpv::ui {

namespace {

constexpr std::size_t kShortestCode = 4;
// Fast fingers leave 60 milliseconds and more, radio scanners 30 and less.
constexpr std::int64_t kLongestPause = 40;

bool Close(KeyMoment before, KeyMoment after) {
  return before && after && *after - *before <= kLongestPause;
}

}  // namespace

bool ScanBurst::Follows(KeyMoment when) const { return !code_.empty() && Close(last_, when); }

bool ScanBurst::Begins(char32_t character, KeyMoment when) {
  const bool begins = !Follows(when);
  if (begins) {
    code_.clear();
    characters_ = 0;
  }
  AppendCharacter(code_, character);
  ++characters_;
  last_ = when;
  return begins;
}

std::optional<std::string> ScanBurst::LineEnd(KeyMoment when) {
  const bool scanned = characters_ >= kShortestCode && Follows(when);
  std::optional<std::string> code;
  if (scanned) {
    code = std::move(code_);
    ended_ = when;
  }
  code_.clear();
  characters_ = 0;
  return code;
}

bool ScanBurst::Trails(KeyMoment when) const { return code_.empty() && Close(ended_, when); }

}  // namespace tpv::ui
