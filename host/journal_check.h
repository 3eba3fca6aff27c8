// What the journal of every till tells when it is read in the order in which it was
// written: openings and closures take turns, and each entry belongs between two.
#pragma once

#include <vector>

#include "host/store_check.h"

namespace tpv {

// The rules with what breaks them; those that hold have count 0. Throws DatabaseError.
std::vector<StoreFinding> CheckJournal(Connection& connection);

}  // namespace tpv
