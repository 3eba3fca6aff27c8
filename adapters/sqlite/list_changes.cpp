#include "adapters/sqlite/list_changes.h"

#include <map>
#include <string>

#include "adapters/sqlite/kept_months.h"
#include "adapters/sqlite/store_file.h"
#include "data/schema.h"

namespace tpv::sqlite {

namespace {

// By name, as the engine keeps them.
std::map<std::string, std::string> Triggers() {
  std::map<std::string, std::string> triggers;
  for (const schema::Table& table : schema::Tables()) {
    for (const char* change : {"INSERT", "UPDATE", "DELETE"}) {
      if (!table.reference) continue;
      const std::string name = "tpv_" + std::string(table.name) + "_" + change;
      triggers[name] = "CREATE TRIGGER " + name + " AFTER " + change + " ON \"" + std::string(table.name) +
                       "\" BEGIN INSERT INTO TpvCambios (Id, Cambios) VALUES (1, 1) ON CONFLICT (Id) DO UPDATE SET "
                       "Cambios = Cambios + 1; END";
    }
  }
  triggers.merge(KeptMonthsTriggers());
  return triggers;
}

}  // namespace

bool CountsListChanges(sqlite3* handle) {
  std::string wanted = std::string(kKeptMonthsTable) + "\n";
  for (const auto& [name, text] : Triggers()) wanted += text + "\n";
  return wanted == Text(handle,
                        "SELECT group_concat(sql || char(10), '') FROM (SELECT sql FROM main.sqlite_master WHERE "
                        "name = 'TpvMeses' OR type = 'trigger' AND substr(name, 1, 4) = 'tpv_' ORDER BY type, name)");
}

void CountListChanges(sqlite3* handle) {
  Run(handle, "CREATE TABLE IF NOT EXISTS main.TpvCambios (Id INTEGER PRIMARY KEY, Cambios INTEGER)");
  Run(handle, "DROP TABLE IF EXISTS main.TpvMeses");  // nobody watched over what it holds
  Run(handle, kKeptMonthsTable);
  for (const auto& [name, text] : Triggers()) Run(handle, "DROP TRIGGER IF EXISTS main." + name + "; " + text);
}

ListChanges::ListChanges(sqlite3* handle)
    : handle_(handle),
      data_version_(handle, "PRAGMA main.data_version"),
      schema_version_(handle, "PRAGMA main.schema_version"),
      changes_(handle, "SELECT Cambios FROM main.TpvCambios") {}

bool ListChanges::Happened() {
  const int data = data_version_.Value();
  if (data_ == data) return false;
  data_ = data;
  const std::optional<Count> count = Ask();
  const bool same = count && count == count_;
  count_ = count;
  return !same;
}

std::optional<ListChanges::Count> ListChanges::Ask() {
  if (unsettled_ && sqlite3_txn_state(handle_, "main") == SQLITE_TXN_WRITE) return std::nullopt;
  unsettled_ = false;
  const int schema = schema_version_.Value();
  if (schema_ != schema) {
    schema_ = schema;
    counts_ = CountsListChanges(handle_);
  }
  if (!counts_) return std::nullopt;
  return Count{schema, changes_.Value()};
}

}  // namespace tpv::sqlite
