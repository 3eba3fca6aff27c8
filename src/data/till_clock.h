// The order of a till's journal in time. What a till does next is dated by the
// store's clock, but never before what it did last: a clock that was set back, or
// the hour that comes twice, must not put a closure under what it closes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"
#include "data/codes.h"

namespace tpv {

class Connection;

// The store's clock and a till's newest entry, read at once. Throws DatabaseError.
class TillClock {
 public:
  TillClock(Connection& connection, std::int32_t till);

  const DateTime& now() const { return now_; }
  const std::optional<DateTime>& newest() const { return newest_; }

  // Throws TillRefusal while the newest entry is of a day after today: either the
  // clock is wrong or the entry is.
  void RequireNoFuture() const;
  // Throws TillRefusal with the text for a day after today.
  void RequireNotAfterToday(const DateTime& day, const char* refusal) const;

  // "dd/mm/yyyy hh:mm:ss" for what happens now; "" where the store's clock will do.
  std::string Moment() const;
  // The same for an opening or closure, which has to be the newest entry.
  std::string NewestMoment() const;
  // The first second behind the newest entry, which there must be.
  std::string BehindNewest() const;

 private:
  DateTime now_;
  std::optional<DateTime> newest_;
};

// The till's newest opening or closure; nullopt for none.
std::optional<DateTime> NewestEvent(Connection& connection, std::int32_t till, JournalEvent event);

}  // namespace tpv
