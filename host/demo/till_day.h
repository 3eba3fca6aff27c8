// A till's past day: opening, sales paid in every way, debts collected, closure.
#pragma once

#include <array>
#include <cstdint>
#include <deque>

#include "host/demo/catalogue.h"
#include "host/demo/fill.h"

namespace tpv::demo {

// How a shop sells, besides the demonstration's small way.
struct Habits {
  int most_lines = 6;        // of a ticket
  int most_open = 1 << 30;   // tickets on credit, until somebody pays
  bool keeps_books = false;  // moves stock, invoices some tickets, pays out of the till
};

struct TillDayPlan {
  DateTime date;
  int till = 1;
  int agent = 1;
  int tickets = 0;
  int articles = 0;  // sold from the first ones
  std::uint64_t seed = 0;
  Habits habits;
};

struct Debt {
  int sale;
  double amount;
};

// What goes on from one till's day to the next. Ids and numbers of a store that
// was empty are the same.
struct Ledger {
  int sales = 0;
  int invoices = 0;
  int open = 0;                                        // debts in all
  std::array<std::deque<Debt>, kCustomers + 2> debts;  // by customer, oldest first
};

void FillTillDay(Connection& connection, const TillDayPlan& plan, Ledger& ledger);

}  // namespace tpv::demo
