// What was worked out of a month's sales, kept by a store that forgets it by itself as soon
// as it no longer holds.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

// Months are named "2026-10". Whoever changes a ticket of the month, a line of one or a
// payment that was taken in it, whatever the program, makes the store forget the month in the same
// transaction; a changed tax rate makes it forget all. Throws DatabaseError.
class MonthMemory {
 public:
  virtual ~MonthMemory() = default;

  // What is kept of the month; "" for nothing.
  virtual std::string Recall(std::string_view month) = 0;
  // Before the month is read in order to be kept; inside the caller's transaction. The
  // mark tells afterwards whether it was changed meanwhile.
  virtual std::string Announce(std::string_view month) = 0;
  // Keeps the text, unless the month has changed since it was so marked; inside the
  // caller's transaction.
  virtual void Keep(std::string_view month, std::string_view mark, std::string_view text) = 0;
};

}  // namespace tpv
