// Takes back what a slip of the keyboard or a wrong clock left: openings, entries and
// sales of a day that is yet to come, which keep a till from working until then.
#pragma once

#include <string>

#include "platform/database.h"

namespace tpv {

// Says what is dated after the store's today and where it belongs: an entry between
// those that were written before and after it, a sale at its payment. Changes these
// dates when `agreed`, all in one transaction, and nothing else. Throws DatabaseError.
std::string MendStore(Connection& connection, bool agreed);

}  // namespace tpv
