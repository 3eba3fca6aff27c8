// SQL Server's data definition statements for the shop's schema.
#pragma once

#include <string>
#include <vector>

#include "data/schema.h"

namespace tpv {

// A table with its indexes, or a function; named as it stands in dbo.
struct ServerObject {
  std::string name;
  bool table;
  std::vector<std::string> statements;  // to be run in the object's own database
};

// In the order in which they can be made, the catalogue's before the store's.
std::vector<ServerObject> ServerObjects(schema::Home home);

// A column of a table, for adding it to one that lacks it.
std::string ServerColumn(const schema::Table& table, std::size_t index);

}  // namespace tpv
