// The store that an order is about, or the one that the start window remembers.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace tpv {

class Clock;
class Settings;

// Before the data source or connection string of a store on a server.
inline constexpr std::string_view kServerStore = "odbc:";
bool IsServerStore(std::string_view store);

// A store's file, or "odbc:" and what is behind --odbc; "" for the remembered one.
// Takes "--store FICHERO" or "--odbc CONEXIÓN" out of the arguments. Throws UsageError.
std::string TakeStoreOption(std::vector<std::string>& arguments);

// The store that the start window remembers. Throws UsageError when there is none.
std::string RememberedStore(const Settings& settings);

// The one or the other.
std::string TakeChosenStore(const Settings& settings, std::vector<std::string>& arguments);

// Opens what is there; `store` as above. Throws DatabaseError and UsageError.
std::unique_ptr<Connection> OpenChosenStore(const std::string& store, const Clock& clock);

}  // namespace tpv
