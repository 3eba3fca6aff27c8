// What a period's tickets and collections come to, added up as the sales journal adds them.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "panel/period.h"
#include "screen/sold_totals.h"

namespace tpv {
class Connection;
}

namespace tpv::panel {

using Cents = std::int64_t;
// Millionths of a euro: lines may have more decimals than cents.
using Micros = std::int64_t;

struct SoldArticle {
  Micros sold = 0;  // with tax
  double units = 0;
  bool operator==(const SoldArticle&) const = default;
};

struct Sums {
  // Tickets, each to the cent as the journal lists it. Seller and till by their numbers.
  std::map<DateTime, Cents> by_day;
  std::array<Cents, 24> by_hour{};
  std::map<std::int32_t, Cents> by_seller;
  std::map<std::int32_t, Cents> by_till;
  long tickets = 0;  // with lines
  Cents sold = 0;

  // Lines, each with its tax to the cent as the journal totals them. Article by its id, 0 for
  // none; rate in percent.
  std::unordered_map<std::int32_t, SoldArticle> by_article;
  std::map<double, Micros> by_rate;
  Micros returned = 0;  // what was taken back: negative

  // What was collected.
  Micros cash = 0;
  Micros card = 0;
  Micros discounts = 0;

  Sums& operator+=(const Sums& more);
  bool operator==(const Sums&) const = default;
};

// Throws DatabaseError, and GivenUp where somebody listens.
Sums ReadSums(Connection& connection, const Days& days, const LineTax& tax_of);

// What tickets not wholly collected still owe, by the ticket's age in days: up to 7, 30, 90,
// 365, and older.
inline constexpr std::array<int, 4> kAges = {7, 30, 90, 365};
using PendingByAge = std::array<Cents, kAges.size() + 1>;
PendingByAge ReadPending(Connection& connection, const DateTime& today);

struct Shortage {
  std::int32_t article = 0;
  double days = 0;  // that the stock lasts at this pace; 0 when there is none
};

// Articles whose stock does not last `within` days at the pace at which they were sold in
// the period, the shortest first, `most` of them.
std::vector<Shortage> ReadShortages(Connection& connection, const Sums& sums, std::int64_t days_of_period,
                                    double within, std::size_t most);

// Names by id; what is not there any more is missing.
std::map<std::int32_t, std::string> ArticleNames(Connection& connection, const std::vector<std::int32_t>& ids);

}  // namespace tpv::panel
