// What can be told of a select before it runs.
#pragma once

#include <string_view>

#include "adapters/sqlite/dialect/ast.h"

namespace tpv::dialect {

bool IsAggregate(std::string_view function);
// Whether one of its values is computed over all of its rows.
bool Aggregates(const Select& select);
// Whether the select can never give more than one row: TOP 1, an aggregate
// without groups, no table, or one table asked by its key.
bool GivesOneRow(const Select& select);

}  // namespace tpv::dialect
