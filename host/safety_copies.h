// The start window's safety copies: one by itself after each closing, one by hand, and
// what there is to say about the last.
#pragma once

#include <future>
#include <optional>
#include <string>

#include "host/backup.h"

namespace tpv {

class SafetyCopies {
 public:
  // Both outlive it; the clock may be asked by another thread. Its end waits for a copy
  // that is being made.
  SafetyCopies(const Settings& settings, const Clock& clock) : settings_(settings), clock_(clock) {}

  // The embedded store that is open, "" for one that is not copied.
  void Watch(const std::string& store);

  // A till has closed: begins a copy, which goes on by itself. Throws nothing.
  void Closed();

  // Makes one while the caller waits; what to tell the operator. Throws FileError and
  // DatabaseError.
  std::string MakeNow();

  // Why copies that were begun failed, once that is known; waits for it when asked to.
  std::optional<std::string> Failure(bool wait);

  // A line about the last copy, "" without a store.
  std::string Said() const;
  // Short, when the last one is a week old or there is none; else "".
  std::string Warning() const;

 private:
  std::optional<DateTime> Last() const;

  const Settings& settings_;
  const Clock& clock_;
  std::string store_;
  std::future<std::string> running_;
  std::string failures_;  // of those before it
};

}  // namespace tpv
