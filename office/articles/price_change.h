// New prices for many articles at once: what they would be, and storing them all or none.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tpv {
class DatabaseObject;
}

namespace tpv::office {

// What a new price with tax ends with.
enum class PriceEnd { Cent, FiveCents, TenCents, NinetyFive, NinetyNine };

struct PriceRule {
  std::string search;  // words that the article has, as in a search; "" for all
  int tax_kind = 0;    // 0 for all
  double percent = 0;
  PriceEnd end = PriceEnd::Cent;
};

struct PriceChange {
  std::int32_t id = 0;
  std::string code;
  std::string description;
  double net = 0;     // as stored
  double price = 0;   // with tax, as it rings
  double new_net = 0;
  double new_price = 0;
  std::string fault;  // why it cannot change, in Spanish; "" when it can

  bool operator==(const PriceChange&) const = default;
};

// The nearest price above 0 that ends so.
double PriceEndingIn(double price, PriceEnd end);

// The articles in use that the rule would change, by description. Throws DatabaseError.
std::vector<PriceChange> PlanPrices(DatabaseObject& store, const PriceRule& rule);

// Stores the planned prices of those articles in one transaction, unless the rule comes
// to others by now; false then and nothing is stored. Throws DatabaseError.
bool StorePrices(DatabaseObject& store, const PriceRule& rule, const std::vector<PriceChange>& plan,
                 const std::set<std::int32_t>& chosen);

}  // namespace tpv::office
