// The different values of an indexed column ("which tills are there") on a server that
// would read the whole index for them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tpv::odbc {

// For "SELECT DISTINCT a FROM b ORDER BY a" over a column that an index begins with: a
// statement with the same rows, which looks into the index once for each value. Nullopt
// for any other. `open_server`: it is for that one (open_server.h).
std::optional<std::string> LeapThroughIndex(std::string_view sql, bool open_server);

}  // namespace tpv::odbc
