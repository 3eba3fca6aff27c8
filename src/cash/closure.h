// Writing a closure: its own entry and its stamp on every entry that it covers,
// all of it or nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cash/cash_count.h"
#include "cash/closing_period.h"

namespace tpv {

struct Closure {
  bool server_date = true;
  std::string date;  // as typed
  double initial = 0;  // euros, as the next four
  double cash = 0;
  double card = 0;
  double paid = 0;
  double withdrawn = 0;
  std::vector<std::int32_t> collections;  // entries to stamp
  std::string mark;  // ClosingPeriod::Mark when the figures were read
  std::optional<CashCount> count;  // of the drawer, where somebody counted it
};

class ClosureFailed : public std::runtime_error {
 public:
  ClosureFailed(const std::string& reason, bool closure_inserted)
      : std::runtime_error(reason), inserted(closure_inserted) {}
  bool inserted;  // false: the closure's own entry was refused
};

// The till's entries are no longer those of the figures shown, or one of its sales
// is still in progress.
class PeriodChanged : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Throws TillRefusal when the closure's day is after today or before the newest entry
// of the context's till.
void RequireDay(Context& context, const Closure& closure);

// Stores the closure for the context's till and agent; returns its DiaCaj_Id. Throws
// TillRefusal for a till that is closed and for what RequireDay refuses, or one of
// the two above; nothing is stored then.
std::int32_t StoreClosure(Context& context, const ClosingPeriod& period, const Closure& closure);

}  // namespace tpv
