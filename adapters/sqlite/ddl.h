// SQLite's data definition statements for the shop's schema.
#pragma once

#include <string>
#include <vector>

#include "data/schema.h"

namespace tpv {

// The table and its indexes in a database of the connection; what is there already
// stays as it is.
std::vector<std::string> SqliteDdl(const schema::Table& table, const std::string& database);

// A column of it, for adding it to a table that lacks it.
std::string SqliteColumn(const schema::Table& table, std::size_t index);

}  // namespace tpv
