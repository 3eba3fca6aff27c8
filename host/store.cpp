#include "host/store.h"

#include <filesystem>

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

void MakeStore(const std::string& path, Contents contents, const Clock& clock) {
  CreateStore(path);
  SqliteConnection connection(path, clock);
  Transaction transaction(connection);
  FillStore(connection, contents, clock);
  transaction.Commit();
}

void MakeShop(const std::string& path, const office::ShopSetup& setup, const Clock& clock) {
  CreateStore(path);
  SqliteConnection connection(path, clock);
  Transaction transaction(connection);
  office::FillShop(connection, setup);
  transaction.Commit();
}

void MakeLargeStore(const std::string& path, const LargeStore& size, const Clock& clock) {
  CreateStore(path);
  SqliteConnection connection(path, clock);
  Transaction transaction(connection);
  FillLarge(connection, size, clock.Now());
  transaction.Commit();
}

std::unique_ptr<Connection> OpenStore(const std::string& path, Contents when_new,
                                      const Clock& clock) {
  if (!std::filesystem::exists(path)) MakeStore(path, when_new, clock);
  return std::make_unique<SqliteConnection>(path, clock);
}

std::unique_ptr<Connection> OpenExistingStore(const std::string& path, const Clock& clock) {
  if (!std::filesystem::exists(path)) throw DatabaseError("No existe el almacén «" + path + "»");
  return std::make_unique<SqliteConnection>(path, clock);
}

}  // namespace tpv
