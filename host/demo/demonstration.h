// A shop worth looking at: articles, customers, agents, a fortnight of sales.
#pragma once

#include <cstdint>
#include <string>

#include "base/date_time.h"

namespace tpv {

class Connection;

// Fills an empty store, always the same for the same moment. The connection
// should be in a transaction. Ends with all tills closed.
void FillDemonstration(Connection& connection, const DateTime& now);

// Whether a store was filled so: its sales are nobody's.
bool IsDemonstration(Connection& connection);
// What stands in every title and band of one, and that; "" for a shop.
inline constexpr const char* kDemonstration = "DEMOSTRACIÓN";
std::string BannerOf(Connection& connection);
// Where this machine keeps its demonstration.
std::string DemonstrationStore();

struct LargeStore {
  int tickets = 100000;
  int days = 365;
  int articles = 100000;
  std::uint64_t seed = 1;
};

// The same shop after years of sales, for measuring: five lines a ticket, up to
// 5,000 tickets on credit, some invoiced. In a transaction as well.
void FillLarge(Connection& connection, const LargeStore& size, const DateTime& now);

}  // namespace tpv
