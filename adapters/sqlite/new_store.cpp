#include "adapters/sqlite/new_store.h"

#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/store_file.h"
#include "adapters/sqlite/store_upgrade.h"
#include "platform/clock.h"

namespace tpv {

namespace {

void MakeTables(const std::string& path) {
  struct NoClock : Clock {
    DateTime Now() const override { return {}; }
  } const clock;
  sqlite::MakeFile(path);
  const sqlite::Handle handle = sqlite::OpenFile(path);
  RegisterFunctions(handle.get(), clock);
  sqlite::Run(handle.get(), "BEGIN IMMEDIATE");
  sqlite::AddWhatIsMissing(handle.get());
  sqlite::Run(handle.get(), "PRAGMA main.application_id = " + std::to_string(sqlite::kApplicationId));
  sqlite::Run(handle.get(), "COMMIT");
}

}  // namespace

NewStore::NewStore(const std::string& path) : path_(path), partial_(PartialPath(path)), lock_(path) {
  if (sqlite::IsThere(path_)) throw StoreExists(path_);
  // A journal that lies there already would become the new store's.
  for (const char* ending : sqlite::kJournals) {
    if (sqlite::IsThere(path_ + ending)) throw StoreExists(path_ + ending);
  }
  sqlite::RemoveWithJournals(partial_);
  try {
    MakeTables(partial_);
  } catch (const DatabaseError&) {
    sqlite::RemoveWithJournals(partial_);
    throw;
  }
}

NewStore::~NewStore() { sqlite::RemoveWithJournals(partial_); }

void NewStore::Keep() {
  if (sqlite::IsThere(partial_ + "-wal")) throw DatabaseError("El almacén nuevo sigue abierto");
  sqlite::SyncFile(partial_);
  if (!sqlite::RenameToFree(partial_, path_)) throw StoreExists(path_);
  lock_.Sync();
}

void CreateStore(const std::string& path) { NewStore(path).Keep(); }

}  // namespace tpv
