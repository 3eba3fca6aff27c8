#include "tests/torture/older_store.h"

#include "adapters/sqlite/ddl.h"
#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/store_file.h"
#include "data/schema.h"
#include "platform/clock.h"

namespace tpv {

void MakeOlder(const std::string& path) {
  struct NoClock : Clock {
    DateTime Now() const override { return {}; }
  } const clock;
  const sqlite::Handle handle = sqlite::OpenFile(path);
  RegisterFunctions(handle.get(), clock);
  const auto run = [&](const std::string& sql) { sqlite::Run(handle.get(), sql); };
  const std::string catalogue = sqlite::Beside(path, "zrcomun");
  sqlite::MakeFile(catalogue);
  run("ATTACH " + sqlite::Literal(catalogue) + " AS zrcomun; BEGIN");
  for (const schema::Table& table : schema::Tables()) {
    if (table.home != schema::Home::Catalogue) continue;
    for (const std::string& statement : SqliteDdl(table, "zrcomun")) run(statement);
    const std::string name(table.name);
    run("INSERT INTO zrcomun." + name + " SELECT * FROM main." + name + "; DROP TABLE main." + name);
  }
  for (const schema::Column& column : schema::FindTable("Parametros")->columns) {
    const std::string name(column.name);
    if (name.starts_with("Par_Fis")) run("ALTER TABLE main.Parametros DROP COLUMN " + name);
  }
  run("DROP TABLE main.Fiscal; DROP TABLE main.FiscalRespuestas; DROP TABLE main.FiscalTurno");
  run("PRAGMA main.user_version = 3; COMMIT; PRAGMA main.journal_mode = WAL; PRAGMA zrcomun.journal_mode = WAL");
}

}  // namespace tpv
