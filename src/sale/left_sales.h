// Sales that wait to be gone on with: parked by an operator for whichever till takes
// them up, or left by a till whose program died.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/sales_in_progress.h"

namespace tpv {

struct Context;

struct LeftSale {
  SaleInProgress sale;
  std::string till;      // that keyed it last
  std::string agent;     // names, "" where there are none
  std::string customer;
  double total = 0;      // euros, with tax
};

// What this till left and all that is parked, oldest first. Throws DatabaseError.
std::vector<LeftSale> ReadLeftSales(Connection& connection, std::int32_t till);

// Each in its own transaction. All throw SaleTaken when the sale is no more what was
// read of it: another till took it up, parked it or gave it up.

// Makes it the context's sale, keyed at the till; throws TillRefusal when that is closed.
void TakeUpSale(Context& context, const SaleInProgress& seen, std::int16_t till);
void ParkLeftSale(Context& context, const SaleInProgress& seen);
void GiveUpLeftSale(Context& context, const SaleInProgress& seen);

// Parks the context's sale in progress.
void ParkSale(Context& context);

}  // namespace tpv
