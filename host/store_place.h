// The store that an order of the program names.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"

namespace tpv {

class Clock;

// Where a store is: a file, or behind a connection.
struct StorePlace {
  bool server = false;
  std::string name;
};

// Reads "FICHERO" or "--odbc CONEXIÓN" at `at`, which moves behind it. Throws UsageError
// with `usage`.
StorePlace TakePlace(const std::vector<std::string>& arguments, std::size_t& at, const char* usage);

// Opens what is there and brings no store up to date. Throws DatabaseError and UsageError.
std::unique_ptr<Connection> OpenExisting(const StorePlace& place, const Clock& clock);

}  // namespace tpv
