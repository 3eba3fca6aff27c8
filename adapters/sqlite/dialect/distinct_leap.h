// The different values of an indexed column ("which tills are there") by one look into
// the index for each of them, however many rows there are.
#pragma once

#include <optional>
#include <string>

#include "adapters/sqlite/dialect/ast.h"

namespace tpv::dialect {

// SQLite's text for a select that asks for just that, in order; nullopt for any other.
std::optional<std::string> LeapThroughIndex(const Select& select);

}  // namespace tpv::dialect
