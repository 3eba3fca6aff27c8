// A till's past day: opening, sales paid in every way, closure.
#pragma once

#include <cstdint>

#include "host/demo/fill.h"

namespace tpv::demo {

struct TillDayPlan {
  DateTime date;
  int till = 1;
  int agent = 1;
  int tickets = 0;
  int articles = 0;  // sold from the first ones
  std::uint64_t seed = 0;
};

// `next_number` is the next ticket's number, moved on.
void FillTillDay(Connection& connection, const TillDayPlan& plan, int& next_number);

}  // namespace tpv::demo
