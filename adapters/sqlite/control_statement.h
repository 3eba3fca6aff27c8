// A statement without values that runs often: BEGIN, COMMIT and their kin,
// prepared at its first run.
#pragma once

#include "adapters/sqlite/statement_cache.h"

namespace tpv::sqlite {

class ControlStatement {
 public:
  ControlStatement(sqlite3* handle, const char* text) : handle_(handle), text_(text) {}

  // Throws DatabaseError.
  void Run() {
    if (Try() != SQLITE_OK) ThrowLastError(handle_);
  }
  // The first column of its row. Throws DatabaseError.
  int Value() {
    Prepare();
    sqlite3_step(statement_.get());
    const int value = sqlite3_column_int(statement_.get(), 0);
    if (sqlite3_reset(statement_.get()) != SQLITE_OK) ThrowLastError(handle_);
    return value;
  }
  // SQLite's code.
  int Try() {
    Prepare();
    sqlite3_step(statement_.get());
    return sqlite3_reset(statement_.get());
  }

 private:
  void Prepare() {
    if (statement_ != nullptr) return;
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(handle_, text_, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
  }

  sqlite3* handle_;
  const char* text_;
  StatementPtr statement_;
};

}  // namespace tpv::sqlite
