// The store reached as a program would that does the till's reads and writes by
// hand: prepared statements through SQLite's own interface, same durability.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

#include "platform/clock.h"

namespace tpv::bench {

// Throws std::runtime_error when the engine refuses anything.
class DirectStore {
 public:
  DirectStore(const std::string& path, const Clock& clock);
  ~DirectStore();
  DirectStore(const DirectStore&) = delete;
  DirectStore& operator=(const DirectStore&) = delete;

  void Run(const char* sql);
  sqlite3* handle() const { return handle_; }

 private:
  sqlite3* handle_ = nullptr;
};

class Prepared {
 public:
  Prepared(DirectStore& store, const char* sql);
  ~Prepared() { sqlite3_finalize(statement_); }
  Prepared(const Prepared&) = delete;
  Prepared& operator=(const Prepared&) = delete;

  // Binds, steps through all rows reading every field, and resets. Returns the
  // sum of the first field, 0 without rows.
  template <typename... Values>
  double operator()(const Values&... values) {
    int at = 0;
    (Bind(++at, values), ...);
    return ReadAll();
  }

 private:
  void Bind(int at, std::int64_t value) { sqlite3_bind_int64(statement_, at, value); }
  void Bind(int at, int value) { sqlite3_bind_int(statement_, at, value); }
  void Bind(int at, double value) { sqlite3_bind_double(statement_, at, value); }
  void Bind(int at, const std::string& value) {
    sqlite3_bind_text(statement_, at, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  }
  double ReadAll();
  void ReadRow();

  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace tpv::bench
