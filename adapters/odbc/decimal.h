// Decimal texts as drivers send them ("-1234.5000", ".5") without detour through
// a binary fraction.
#pragma once

#include <string_view>

#include "base/variant.h"

namespace tpv::odbc {

// Money when the value has at most 4 decimals and fits, otherwise a double.
// Throws DatabaseError for a text that is no number.
Variant ReadDecimal(std::string_view text);

}  // namespace tpv::odbc
