#include "host/server_store.h"

#include "data/schema.h"
#include "host/play.h"
#include "platform/clock.h"
#ifdef TPV_HAS_ODBC
#include "adapters/odbc/odbc_connection.h"
#include "adapters/odbc/server_ddl.h"
#endif

namespace tpv {

namespace {

#ifdef TPV_HAS_ODBC

// The session works in another database of the server while this lives.
class Using {
 public:
  Using(Connection& connection, const std::string& database)
      : connection_(connection),
        home_(connection.Execute("SELECT DB_NAME() AS nombre")->Field(0).ToText()) {
    Use(database);
  }
  ~Using() {
    try {
      Use(home_);
    } catch (const DatabaseError&) {
      // The session is lost, and a new one begins at home.
    }
  }
  Using(const Using&) = delete;
  Using& operator=(const Using&) = delete;

 private:
  void Use(const std::string& database) { connection_.Execute("USE [" + database + "]"); }

  Connection& connection_;
  const std::string home_;
};

bool Exists(Connection& connection, const std::string& name) {
  return !connection.Execute("SELECT OBJECT_ID('dbo." + name + "') AS numero")->Field(0).IsNull();
}

bool MakeMissing(Connection& connection, schema::Home home) {
  bool made = false;
  for (const ServerObject& object : ServerObjects(home)) {
    if (Exists(connection, object.name)) continue;
    for (const std::string& statement : object.statements) connection.Execute(statement);
    made |= object.table;
  }
  return made;
}

#endif

bool HasRows(Connection& connection) {
  for (const schema::Table& table : schema::Tables()) {
    if (table.home != schema::Home::Store) continue;
    const std::string statement = "SELECT TOP 1 * FROM " + std::string(table.name);
    if (!connection.Execute(statement)->Eof()) return true;
  }
  return false;
}

}  // namespace

#ifdef TPV_HAS_ODBC

std::unique_ptr<Connection> OpenServer(const std::string& connection) {
  try {
    return std::make_unique<OdbcConnection>(odbc::ReadTarget(connection));
  } catch (const odbc::TargetError& error) {
    throw UsageError(std::string("--odbc: ") + error.what());
  }
}

bool MakeServerTables(Connection& connection) {
  Transaction transaction(connection);
  bool made = false;
  {
    const Using catalogue(connection, "zrcomun");
    made = MakeMissing(connection, schema::Home::Catalogue);
  }
  made |= MakeMissing(connection, schema::Home::Store);
  transaction.Commit();
  return made;
}

#else

std::unique_ptr<Connection> OpenServer(const std::string&) {
  throw UsageError("--odbc: este programa se construyó sin ODBC");
}

bool MakeServerTables(Connection&) { return false; }

#endif

void PrepareServer(Connection& connection, Contents contents, const Clock& clock) {
  MakeServerTables(connection);
  const bool filled = HasRows(connection);
  if (filled && contents == Contents::Empty) throw UsageError("--empty: el almacén ya tiene datos");
  if (filled) return;
  Transaction transaction(connection);
  FillStore(connection, contents, clock);
  transaction.Commit();
}

}  // namespace tpv
