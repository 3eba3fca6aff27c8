#include "adapters/sqlite/lone_store.h"

#include <sqlite3.h>

#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/store_upgrade.h"
#include "platform/database.h"

namespace tpv::sqlite {

LoneStore::LoneStore(const std::string& path, const Clock& clock) : handle_(OpenFile(path)) {
  if (LacksItsLog(handle())) {
    throw DatabaseError("Falta «" + LogOf(handle()) + "»: no está lo último que se grabó", "08001");
  }
  RegisterFunctions(handle(), clock);
  RequireStore(handle(), path);
  if (IsArchive(handle())) throw DatabaseError("«" + path + "» ya es un archivo de años anteriores", "08001");
  Take(path);
  BringUpToDate(handle());
}

// Whoever has the store open holds a lock on its file, also while he does nothing.
void LoneStore::Take(const std::string& path) {
  KeepLog(handle(), true);
  sqlite3_busy_timeout(handle(), 0);
  const char* alone = "PRAGMA main.user_version; PRAGMA main.locking_mode = EXCLUSIVE; "
                      "PRAGMA main.journal_mode = DELETE; BEGIN EXCLUSIVE; COMMIT";
  if (sqlite3_exec(handle(), alone, nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw DatabaseError("«" + path + "» está en uso: cierre antes todas sus cajas", "08001");
  }
  LayLog(handle());
  SwitchLogOn(handle());
  Run(handle(), "PRAGMA main.synchronous = FULL; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -131072");
}

LoneStore::~LoneStore() { Settle(handle()); }

RawTransaction::~RawTransaction() {
  if (sqlite3_get_autocommit(handle_) == 0) sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

Attached::Attached(sqlite3* handle, const std::string& path, const std::string& name)
    : handle_(handle), name_(name) {
  Run(handle_, "ATTACH DATABASE " + Literal(path) + " AS " + name_);
}

Attached::~Attached() {
  sqlite3_exec(handle_, ("DETACH DATABASE " + name_).c_str(), nullptr, nullptr, nullptr);
}

}  // namespace tpv::sqlite
