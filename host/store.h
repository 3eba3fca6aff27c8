// Making and opening embedded stores.
#pragma once

#include <memory>
#include <string>

#include "adapters/sqlite/sqlite_connection.h"
#include "platform/database.h"

namespace tpv {

class Clock;
struct LargeStore;
namespace office {
struct ShopSetup;
}

enum class Contents {
  Empty,          // one parameters row, all null
  Demonstration,  // a shop worth looking at
};

// Fills a store without rows; the connection should be in a transaction.
void FillStore(Connection& connection, Contents contents, const Clock& clock);

// Creates the store, whole or not at all. Throws DatabaseError when the file exists or
// cannot be made.
void MakeStore(const std::string& path, Contents contents, const Clock& clock);

// Creates the store of a shop of its own, which office::CheckShop accepts.
void MakeShop(const std::string& path, const office::ShopSetup& setup, const Clock& clock);

// Creates a store after years of sales, with the demonstration's assortment.
void MakeLargeStore(const std::string& path, const LargeStore& size, const Clock& clock);

// Opens the store, made first when there is none.
std::unique_ptr<Connection> OpenStore(const std::string& path, Contents when_new,
                                      const Clock& clock);

// Throws DatabaseError when there is none.
std::unique_ptr<Connection> OpenExistingStore(const std::string& path, const Clock& clock,
                                              OpenMode opening = OpenMode::ToSell);

// Of years gone by: it is looked at and nothing is sold.
bool IsArchive(const Connection& connection);
// "ARCHIVO HASTA 2019" for one, else "".
std::string ArchiveBanner(Connection& connection);

// SqliteConnection::MissingLog of an embedded store; "" for any other.
std::string MissingLogOf(const Connection& connection);

}  // namespace tpv
