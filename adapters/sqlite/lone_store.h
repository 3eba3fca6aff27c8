// A store that nobody else has open, nor can open while this lives: for work that no till
// may see halfway.
#pragma once

#include <string>

#include "adapters/sqlite/store_file.h"

namespace tpv {
class Clock;
}

namespace tpv::sqlite {

class LoneStore {
 public:
  // Brings an older store up to date. Throws DatabaseError: also when somebody has it open,
  // and for an archive.
  LoneStore(const std::string& path, const Clock& clock);
  ~LoneStore();
  LoneStore(const LoneStore&) = delete;
  LoneStore& operator=(const LoneStore&) = delete;

  sqlite3* handle() const { return handle_.get(); }
  std::string path() const { return PathOf(handle_.get()); }

 private:
  void Take(const std::string& path);

  Handle handle_;
};

// Begins a writing transaction, which is undone unless it is committed.
class RawTransaction {
 public:
  explicit RawTransaction(sqlite3* handle) : handle_(handle) { Run(handle_, "BEGIN IMMEDIATE"); }
  ~RawTransaction();
  RawTransaction(const RawTransaction&) = delete;
  RawTransaction& operator=(const RawTransaction&) = delete;

  void Commit() { Run(handle_, "COMMIT"); }

 private:
  sqlite3* handle_;
};

// The file goes by that name in the handle's statements while this lives.
class Attached {
 public:
  Attached(sqlite3* handle, const std::string& path, const std::string& name);
  ~Attached();
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;

 private:
  sqlite3* handle_;
  std::string name_;
};

}  // namespace tpv::sqlite
