// What a period's tickets and collections come to, added up as the sales journal adds them.
#pragma once

#include <array>
#include <cstdint>
#include <map>

#include "panel/article_sums.h"
#include "panel/period.h"
#include "screen/sold_totals.h"

namespace tpv {
class Connection;
}

namespace tpv::panel {

using Cents = std::int64_t;

// Tickets of one hour, till and seller, by their numbers; 0 for none.
struct TicketGroup {
  DateTime day;
  int hour = 0;
  std::int32_t till = 0;
  std::int32_t seller = 0;
  long tickets = 1;
  Cents sold = 0;  // with tax, each ticket to the cent
};

// Lines of one article, rate (percent) and amount (euros without tax); 0 for none.
struct LineGroup {
  std::int32_t article = 0;
  double rate = 0;
  double amount = 0;  // of each line
  long lines = 1;
  double units = 0;  // of all together
};

struct Sums {
  // Tickets, each to the cent as the journal lists it. Seller and till by their numbers.
  std::map<DateTime, Cents> by_day;
  std::array<Cents, 24> by_hour{};
  std::map<std::int32_t, Cents> by_seller;
  std::map<std::int32_t, Cents> by_till;
  long tickets = 0;  // with lines
  Cents sold = 0;

  // Lines, each with its tax to the cent as the journal totals them; rate in percent.
  ArticleSums by_article;
  std::map<double, Micros> by_rate;
  Micros returned = 0;  // what was taken back: negative

  // What was collected.
  Micros cash = 0;
  Micros card = 0;
  Micros discounts = 0;

  void Add(const TicketGroup& group);
  void Add(const LineGroup& group, const LineTax& tax_of);
  Sums& operator+=(const Sums& more);
  bool operator==(const Sums&) const = default;
};

// Row by row from a store that keeps months: it is at hand. Others group rows themselves, which
// spares their journeys. Throws DatabaseError, and GivenUp where somebody listens.
Sums ReadSums(Connection& connection, const Days& days, const LineTax& tax_of);

}  // namespace tpv::panel
