// The other database of a server's session, for a while.
#pragma once

#include <string>

#include "platform/database.h"

namespace tpv {

// Statements work in `database` while this lives. SQL Server alone knows it.
class UsingDatabase {
 public:
  UsingDatabase(Connection& connection, const std::string& database);
  ~UsingDatabase();
  UsingDatabase(const UsingDatabase&) = delete;
  UsingDatabase& operator=(const UsingDatabase&) = delete;

 private:
  void Use(const std::string& database);

  Connection& connection_;
  const std::string home_;
};

}  // namespace tpv
