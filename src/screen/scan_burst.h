// Tells a bar-code scanner from fingers: characters that follow each other faster
// than anybody types, and the line end behind them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tpv::ui {

// Moments are milliseconds of any clock that does not go back; nullopt for a key
// whose moment nobody knows, which no scanner has sent.
using KeyMoment = std::optional<std::int64_t>;

class ScanBurst {
 public:
  // A character arrives. True when it may be a code's first one: it does not
  // follow the one before closely.
  bool Begins(char32_t character, KeyMoment when);
  // A line end arrives: the code that it ends, nullopt when fingers typed.
  std::optional<std::string> LineEnd(KeyMoment when);
  // Whether a line end belongs to the code before it, as CR and LF do.
  bool Trails(KeyMoment when) const;
  // Any other key.
  void Interrupt() { code_.clear(); }

 private:
  bool Follows(KeyMoment when) const;

  std::string code_;
  std::size_t characters_ = 0;
  KeyMoment last_;   // the newest character's
  KeyMoment ended_;  // the last code's line end
};

}  // namespace tpv::ui
