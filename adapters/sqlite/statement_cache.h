// Translated and prepared statements by shape, used again and again.
#pragma once

#include <sqlite3.h>

#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "adapters/sqlite/dialect/translator.h"
#include "base/variant.h"

namespace tpv::sqlite {

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementPtr = std::unique_ptr<sqlite3_stmt, Finalizer>;

// All rows of a statement, as they were in that version of its table.
struct VersionedRows {
  std::int64_t version = 0;
  std::int64_t identity = 0;  // unlike that of any other rows of this process
  std::vector<std::vector<Variant>> rows;
};

// One shape: its translation, the prepared statements that nobody reads at the
// moment, and its rows when it reads a reference table.
struct CachedShape {
  dialect::Translation translation;
  std::vector<StatementPtr> idle;
  std::shared_ptr<const VersionedRows> kept;
  bool whole = false;  // no literal was taken out: it is the statement's own text
};

class StatementCache {
 public:
  explicit StatementCache(sqlite3* handle) : handle_(handle) {}

  // What a text without literals was found by before; null for any other. Such a text need
  // not be scanned for them again.
  std::shared_ptr<CachedShape> FindWhole(std::string_view text);
  // The entry stays valid as long as somebody holds it.
  std::shared_ptr<CachedShape> Find(const std::string& shape);
  // A statement of the shape, ready to bind. Throws DatabaseError.
  StatementPtr Take(CachedShape& shape);
  // Hands a statement back for the next use.
  static void Return(CachedShape& shape, StatementPtr statement);

 private:
  static constexpr std::size_t kMost = 300;

  using Entry = std::pair<std::string, std::shared_ptr<CachedShape>>;
  std::shared_ptr<CachedShape> Known(std::string_view shape);

  sqlite3* handle_;
  std::list<Entry> by_use_;  // latest first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> by_shape_;
};

[[noreturn]] void ThrowLastError(sqlite3* handle);

}  // namespace tpv::sqlite
