// A customer's first address: the one that the sale and his invoices show.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tpv {
class Connection;
}

namespace tpv::office {

// The card's fields of the address, in their order; values are plain (office/fields.h).
struct CustomerAddress {
  std::int32_t id = 0;              // DIR_ID, 0 for none
  std::vector<std::string> values;  // empty for none
  bool operator==(const CustomerAddress&) const = default;
};

// Both throw DatabaseError.
CustomerAddress ReadAddress(Connection& connection, std::int32_t customer);
// Changes the address `id`, or makes him one. The caller's transaction holds it.
void StoreAddress(Connection& connection, std::int32_t customer, const CustomerAddress& address);

}  // namespace tpv::office
