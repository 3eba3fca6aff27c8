#include "bench/direct_store.h"

#include <stdexcept>

#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/store_file.h"

namespace tpv::bench {

DirectStore::DirectStore(const std::string& path, const Clock& clock) {
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;  // as the till opens it
  if (sqlite3_open_v2(path.c_str(), &handle_, flags, nullptr) != SQLITE_OK) {
    throw std::runtime_error("no store");
  }
  sqlite3_busy_timeout(handle_, 60000);  // its waiting is unfair: some wait for seconds
  RegisterFunctions(handle_, clock);  // the tables name its collation
  Run("PRAGMA foreign_keys = OFF");
  sqlite::SwitchLogOn(handle_);  // waits where others do the same
  Run("PRAGMA synchronous = FULL");
  Run("PRAGMA temp_store = MEMORY");
  Run("PRAGMA cache_size = -24576");
}

DirectStore::~DirectStore() { sqlite3_close(handle_); }

void DirectStore::Run(const char* sql) {
  if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(handle_));
  }
}

Prepared::Prepared(DirectStore& store, const char* sql) {
  if (sqlite3_prepare_v3(store.handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) !=
      SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(store.handle()));
  }
}

double Prepared::ReadAll() {
  double sum = 0;
  int result;
  while ((result = sqlite3_step(statement_)) == SQLITE_ROW) {
    sum += sqlite3_column_double(statement_, 0);
    ReadRow();
  }
  if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(statement_)));
  sqlite3_reset(statement_);
  return sum;
}

void Prepared::ReadRow() {
  for (int column = sqlite3_column_count(statement_) - 1; column >= 0; --column) {
    switch (sqlite3_column_type(statement_, column)) {
      case SQLITE_INTEGER:
        sqlite3_column_int64(statement_, column);
        break;
      case SQLITE_FLOAT:
        sqlite3_column_double(statement_, column);
        break;
      default:
        sqlite3_column_text(statement_, column);
    }
  }
}

}  // namespace tpv::bench
