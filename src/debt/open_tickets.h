// The tickets that a customer has not wholly paid, as a collection lists them.
#pragma once

#include <string>
#include <vector>

#include "base/variant.h"
#include "debt/collection.h"

namespace tpv {

class Connection;

struct ListedTicket {
  OpenTicket ticket;
  Variant date;       // may be null
  std::string agent;
  double total = 0;   // euros, with tax
};

// Oldest first, then the lower id. A sale in progress is not among them: it is paid
// at its checkout. Throws DatabaseError.
std::vector<ListedTicket> ReadOpenTickets(Connection& connection, std::int32_t customer_id);

}  // namespace tpv
