// A store whose tickets all have their invoice records.
#pragma once

#include "platform/database.h"

namespace tpv::bench {

// Makes the records that are missing, in the order of the tickets; the shop goes on
// without making any. The store is one that MakeRecords was called for.
void RecordAllTickets(Connection& connection);

}  // namespace tpv::bench
