// The orders that make a store: tpv store create, tpv store fill.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "host/store_place.h"
#include "office/shop_setup.h"

namespace tpv {

// A shop's store at a place that has none; office::CheckShop accepts the set-up. Refuses a
// server's store that is in use. Throws DatabaseError, and then there is no shop.
office::Refusals StoreNewShop(const StorePlace& place, const office::ShopSetup& setup, const Clock& clock);

// `arguments` begin with the order itself. 0 when done. Throw UsageError, FileError and
// DatabaseError.
int CreateCommand(const std::vector<std::string>& arguments, std::ostream& out);
int FillCommand(const std::vector<std::string>& arguments, std::ostream& out);

}  // namespace tpv
