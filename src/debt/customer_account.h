// A customer's account: what was sold to it on tickets, what it paid of them, and what it
// owed after each.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/date_time.h"

namespace tpv {

struct Context;

// Euros; one of sold and paid is 0.
struct AccountEntry {
  DateTime when;
  std::string what;  // "Ticket T/12"
  double sold = 0;
  double paid = 0;
  double balance = 0;  // after it
};

struct CustomerAccount {
  double before = 0;  // balance in front of the first entry
  std::vector<AccountEntry> entries;

  double Balance() const { return entries.empty() ? before : entries.back().balance; }
};

// Whole days, either may be missing. Over all days the balance is the customer's debt.
// Tickets without a date count as the oldest. Throws DatabaseError.
CustomerAccount ReadAccount(Context& context, std::int32_t customer_id,
                            const std::optional<DateTime>& from, const std::optional<DateTime>& to);

}  // namespace tpv
