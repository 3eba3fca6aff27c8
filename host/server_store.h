// Stores on a server: opening them and making their tables.
#pragma once

#include <memory>
#include <string>

#include "host/store.h"
#include "platform/database.h"

namespace tpv {

// `connection` is what follows --odbc: a data source or a connection string
// without a password (adapters/odbc/target.h). Throws DatabaseError and UsageError.
std::unique_ptr<Connection> OpenServer(const std::string& connection);

// The same for a till. Tables that this version added are made where the user may;
// otherwise the DatabaseError says what the administrator has to do.
std::unique_ptr<Connection> OpenServerStore(const std::string& connection);

// Makes the tables, functions and indexes that are missing; true when it made
// any table. What is there already is left as it is. All or nothing.
bool MakeServerTables(Connection& connection);

// Makes what is missing on the server of that name or connection and fills a store
// without rows; false when it holds rows already. Throws UsageError for Contents::Empty when it does.
bool PrepareServer(const std::string& name, Contents contents, const Clock& clock);

}  // namespace tpv
