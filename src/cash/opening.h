// Writing an opening: the entry that starts a till's working period.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

struct Context;

struct TillOpening {
  std::int32_t till = 0;
  std::string day;     // a date field's text, "" for now
  double initial = 0;  // euros
};

// Throws TillRefusal for a day after today, and for one under the till's last
// closure, where the opening would be without effect.
void RequireDay(Context& context, const TillOpening& opening);

// Stores it for the context's agent. Throws TillRefusal for a till that is open and
// for what RequireDay refuses, and DatabaseError; nothing is stored then.
void StoreOpening(Context& context, const TillOpening& opening);

}  // namespace tpv
