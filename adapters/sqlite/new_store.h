// Making a store: beside its place, and under its name only when it is whole and on
// the disk. Whatever happens meanwhile, there is a store of that name or none.
#pragma once

#include <string>

#include "adapters/sqlite/folder.h"
#include "platform/database.h"

namespace tpv {

// Somebody else has made it already.
class StoreExists : public DatabaseError {
 public:
  explicit StoreExists(const std::string& file) : DatabaseError("Ya existe «" + file + "»") {}
};

class NewStore {
 public:
  // With all tables and no rows, readable by the user alone. Throws StoreExists when there is
  // something of that name or of its log's, DatabaseError when it cannot be made.
  explicit NewStore(const std::string& path);
  ~NewStore();
  NewStore(const NewStore&) = delete;
  NewStore& operator=(const NewStore&) = delete;

  // Where it is filled; what an interrupted program leaves has this name too.
  static std::string PartialPath(const std::string& path) { return path + ".parcial"; }
  // Gives it its name. Nobody may have it open any more. Throws DatabaseError.
  void Keep();

 private:
  std::string path_;
  std::string partial_;
  sqlite::FolderLock lock_;
};

// A new store without rows.
void CreateStore(const std::string& path);

}  // namespace tpv
