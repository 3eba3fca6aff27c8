// Numbers per series, given out once each.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tpv {
class Connection;
}

namespace tpv::suite {

// The next number of a series; `kind` tells tickets from invoices, `highest` is
// the statement that reads the highest number used before there was a counter.
// The connection must be in a transaction: the number is taken when it commits.
std::int32_t NextNumber(Connection& connection, std::string_view kind, std::string_view series,
                        const std::string& highest);

}  // namespace tpv::suite
