#include "host/using_database.h"

namespace tpv {

UsingDatabase::UsingDatabase(Connection& connection, const std::string& database)
    : connection_(connection),
      home_(connection.Execute("SELECT DB_NAME() AS nombre")->Field(0).ToText()) {
  Use(database);
}

UsingDatabase::~UsingDatabase() {
  try {
    Use(home_);
  } catch (const DatabaseError&) {
    // The session or its transaction is lost: the error under way says so, and
    // a new session begins at home.
  }
}

void UsingDatabase::Use(const std::string& database) {
  connection_.Execute("USE [" + database + "]");
}

}  // namespace tpv
