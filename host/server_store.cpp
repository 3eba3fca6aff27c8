#include "host/server_store.h"

#include <algorithm>
#include <vector>

#include "base/text.h"
#include "data/schema.h"
#include "host/play.h"
#include "host/store_copy.h"
#include "host/using_database.h"
#include "platform/asked_once.h"
#include "platform/clock.h"
#ifdef TPV_HAS_ODBC
#include "adapters/odbc/odbc_connection.h"
#include "adapters/odbc/server_ddl.h"
#endif

namespace tpv {

#ifdef TPV_HAS_ODBC

namespace {

bool Exists(Connection& connection, const std::string& name) {
  return !connection.Execute("SELECT OBJECT_ID('dbo." + name + "') AS numero")->Field(0).IsNull();
}

// Until there were invoice records the parameters said nothing of them.
void AddMissingParameters(Connection& connection) {
  const schema::Table& table = *schema::FindTable("Parametros");
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const std::string name(table.columns[i].name);
    const auto length = connection.Execute("SELECT COL_LENGTH('dbo.Parametros', '" + name + "') AS ancho");
    if (!length->Field(0).IsNull()) continue;
    connection.Execute("ALTER TABLE dbo.[Parametros] ADD " + ServerColumn(table, i));
  }
}

// A table that a server of an earlier version lacks; "" for a whole one.
std::string MissingTable(Connection& connection) {
  std::vector<std::string> names;
  const auto rows = connection.Execute("SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES");
  for (; !rows->Eof(); rows->MoveNext()) names.push_back(rows->Field(0).TextOr(""));
  for (const schema::Table& table : schema::Tables()) {
    const auto same = [&](const std::string& name) { return EqualNoCase(name, table.name); };
    if (table.home == schema::Home::Store && std::none_of(names.begin(), names.end(), same)) {
      return std::string(table.name);
    }
  }
  return "";
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

}  // namespace

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
    const UsingDatabase catalogue(connection, "zrcomun");
    made = MakeMissing(connection, schema::Home::Catalogue);
  }
  made |= MakeMissing(connection, schema::Home::Store);
  AddMissingParameters(connection);
  transaction.Commit();
  return made;
}

std::unique_ptr<Connection> OpenServerStore(const std::string& connection) {
  std::unique_ptr<Connection> store = std::make_unique<AskedOnce>(OpenServer(connection));
  const std::string missing = MissingTable(*store);
  if (missing.empty()) return store;
  try {
    MakeServerTables(*store);
  } catch (const DatabaseError& error) {
    throw DatabaseError(
        "Al almacén le falta la tabla " + missing + " y este usuario no puede crearla. El "
        "administrador debe ejecutar una vez «tpv store create --odbc …». " + error.what(),
        error.sqlstate(), error.native());
  }
  return store;
}

#else

std::unique_ptr<Connection> OpenServerStore(const std::string& connection) { return OpenServer(connection); }

std::unique_ptr<Connection> OpenServer(const std::string&) {
  throw UsageError("--odbc: este programa se construyó sin ODBC");
}

bool MakeServerTables(Connection&) { return false; }

#endif

bool PrepareServer(const std::string& name, Contents contents, const Clock& clock) {
  MakeServerTables(*OpenServer(name));
  const auto connection = OpenServer(name);
  const bool filled = HoldsRows(*connection);
  if (filled && contents == Contents::Empty) throw UsageError("--empty: el almacén ya tiene datos");
  if (filled) return false;
  Transaction transaction(*connection);
  DropBlankParameters(*connection);
  // A shop that has set its parameters has begun on its own.
  const bool begun = !connection->Execute("SELECT TOP 1 * FROM Parametros")->Eof();
  if (!begun) FillStore(*connection, contents, clock);
  transaction.Commit();
  return !begun;
}

}  // namespace tpv
