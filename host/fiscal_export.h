// Invoice records as files that the agency's schemas describe: for an inspector, an adviser
// or the shop's own drawer.
#pragma once

#include <optional>
#include <string>

#include "base/date_time.h"
#include "platform/database.h"

namespace tpv {

// Writes messages of up to 1,000 records into the folder, in the order of the chain, the
// records of those days' documents. Returns how many records there were. A folder that has
// messages already is refused. Throws FileError and DatabaseError.
long ExportRecords(Connection& connection, const std::string& folder, const std::optional<DateTime>& from,
                   const std::optional<DateTime>& to);

}  // namespace tpv
