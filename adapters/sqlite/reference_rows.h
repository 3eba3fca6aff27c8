// The rows of the short lists that every sale reads whole (countries, parameters,
// payment methods), kept until somebody writes to them: what another till has
// committed is seen by the next reader.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "adapters/sqlite/list_changes.h"
#include "data/schema.h"
#include "platform/database.h"

namespace tpv::sqlite {

class ReferenceRows {
 public:
  explicit ReferenceRows(sqlite3* handle);

  // The rows kept for the shape, of a reference table; null when they have to be
  // read. Throws DatabaseError when the store cannot be asked.
  std::shared_ptr<const VersionedRows> Find(const CachedShape& shape);
  // Reads the record set to its end and keeps its rows.
  void Keep(CachedShape& shape, Recordset& rows);
  // This connection writes to the table.
  void Written(const schema::Table& table);

  // Within a snapshot nothing changes: the store is asked once, in the snapshot.
  void BeginSnapshot() { SetSnapshot(true); }
  void EndSnapshot() { SetSnapshot(false); }

 private:
  std::int64_t Version();
  void SetSnapshot(bool in_snapshot);

  ListChanges changes_;
  std::optional<std::int64_t> known_;  // of the snapshot's state
  bool in_snapshot_ = false;
  std::int64_t version_ = 1;
};

std::unique_ptr<Recordset> Kept(std::shared_ptr<CachedShape> shape,
                                std::shared_ptr<const VersionedRows> rows);

}  // namespace tpv::sqlite
