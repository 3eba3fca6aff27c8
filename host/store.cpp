#include "host/store.h"

#include <filesystem>

#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "host/demo/demonstration.h"
#include "office/shop_setup.h"
#include "platform/clock.h"

namespace tpv {

void FillStore(Connection& connection, Contents contents, const Clock& clock) {
  if (contents == Contents::Demonstration) {
    FillDemonstration(connection, clock.Now());
  } else {
    connection.Execute("INSERT INTO Parametros (Par_NumCaja) VALUES (NULL)");
  }
}

namespace {

template <typename Fill>
void Make(const std::string& path, const Clock& clock, Fill fill) {
  NewStore store(path);
  {
    SqliteConnection connection(NewStore::PartialPath(path), clock);
    Transaction transaction(connection);
    fill(connection);
    transaction.Commit();
  }
  store.Keep();
}

}  // namespace

void MakeStore(const std::string& path, Contents contents, const Clock& clock) {
  Make(path, clock, [&](Connection& connection) { FillStore(connection, contents, clock); });
}

void MakeShop(const std::string& path, const office::ShopSetup& setup, const Clock& clock) {
  Make(path, clock, [&](Connection& connection) { office::FillShop(connection, setup); });
}

void MakeLargeStore(const std::string& path, const LargeStore& size, const Clock& clock) {
  Make(path, clock, [&](Connection& connection) { FillLarge(connection, size, clock.Now()); });
}

std::unique_ptr<Connection> OpenStore(const std::string& path, Contents when_new,
                                      const Clock& clock) {
  try {
    if (!std::filesystem::exists(path)) MakeStore(path, when_new, clock);
  } catch (const StoreExists&) {
    if (!std::filesystem::exists(path)) throw;  // else another till has made it meanwhile
  }
  return std::make_unique<SqliteConnection>(path, clock);
}

std::unique_ptr<Connection> OpenExistingStore(const std::string& path, const Clock& clock, OpenMode opening) {
  if (!std::filesystem::exists(path)) throw DatabaseError("No existe el almacén «" + path + "»");
  return std::make_unique<SqliteConnection>(path, clock, opening);
}

bool IsArchive(const Connection& connection) {
  const auto* store = dynamic_cast<const SqliteConnection*>(&connection);
  return store != nullptr && store->IsArchive();
}

std::string ArchiveBanner(Connection& connection) {
  if (!IsArchive(connection)) return "";
  const auto year = connection.Execute("SELECT TOP 1 Arv_Hasta FROM Archivos WHERE Arv_Hasta < 0");
  return year->Eof() ? "ARCHIVO" : "ARCHIVO HASTA " + std::to_string(-year->Field(0).IntOr(0));
}

std::string MissingLogOf(const Connection& connection) {
  const auto* store = dynamic_cast<const SqliteConnection*>(&connection);
  return store == nullptr ? std::string() : store->MissingLog();
}

}  // namespace tpv
