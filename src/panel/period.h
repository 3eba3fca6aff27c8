// The days that the manager looks at, and the same period before it.
#pragma once

#include <cstdint>
#include <string>

#include "base/date_time.h"

namespace tpv::panel {

// Whole days, both included; midnights.
struct Days {
  DateTime first;
  DateTime last;

  std::int64_t Count() const;
  // "between … AND … " for a statement.
  std::string Between() const;
  // "24/11/2026", "01/11/2026 - 24/11/2026"
  std::string Text() const;

  bool operator==(const Days&) const = default;
};

struct Periods {
  Days now;
  Days before;
};

enum class Span { Today, Yesterday, Week, Month, Year };

// Up to today, and as many days of the day, week, month or year before: a month's first 24
// days beside the first 24 of the last one, as far as that goes.
Periods PeriodsOf(Span span, const DateTime& now);
// The whole month that the day lies in.
Days MonthOf(const DateTime& day);
// As many days right before those.
Periods PeriodsOf(const Days& days);

}  // namespace tpv::panel
