// A shop worth looking at: articles, customers, agents, a fortnight of sales.
#pragma once

#include "base/date_time.h"

namespace tpv {

class Connection;

// Fills an empty store, always the same for the same moment. The connection
// should be in a transaction. Ends with all tills closed.
void FillDemonstration(Connection& connection, const DateTime& now);

}  // namespace tpv
