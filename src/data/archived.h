// Where a shop's old years lie that are no longer in its store: in archives beside it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"

namespace tpv {

class Connection;

// The texts are for the operator, and "" where no archive is concerned: also in a store that
// knows of none, and in an archive itself.

// For a ticket that is not in the store: "mírela en el archivo hasta 2019, «…»".
std::string ArchiveOfTicket(Connection& connection, const std::string& series, std::int32_t number);

// For a closure of whose entries some are elsewhere: "está en el archivo …".
std::string ArchiveOfClosure(Connection& connection, std::int32_t closure);

// For a list of days from that one on, nullopt for the first ever: that it lacks some. Asks
// the store only of years before `now`'s, for no others are archived.
std::string ArchivedSince(Connection& connection, const std::optional<DateTime>& from, const DateTime& now);

}  // namespace tpv
