// The store's own count of what was ever changed in the short lists that every sale
// reads whole, whoever changed it: another till, an older program, a technician's tool.
#pragma once

#include <optional>

#include "adapters/sqlite/control_statement.h"

namespace tpv::sqlite {

// Whether the store counts, and forgets months that have changed (kept_months.h), as this
// program wants it done.
bool CountsListChanges(sqlite3* handle);
// Makes it do so from now on; in the caller's transaction.
void CountListChanges(sqlite3* handle);

class ListChanges {
 public:
  explicit ListChanges(sqlite3* handle);

  // Whether the lists may have changed since this was asked last; asks the store no more
  // than somebody else's commit needs. Throws DatabaseError.
  bool Happened();
  // This connection writes to one of the lists. Until that is stored or undone nothing
  // can be said of the count.
  void WriteHere() { unsettled_ = true; }

 private:
  struct Count {
    int schema = 0;  // another one: perhaps nothing was counted meanwhile
    int changes = 0;
    bool operator==(const Count&) const = default;
  };
  // Nullopt where nobody counts.
  std::optional<Count> Ask();

  sqlite3* handle_;
  ControlStatement data_version_;  // the engine's count of what others committed
  ControlStatement schema_version_;
  ControlStatement changes_;
  std::optional<int> data_;
  std::optional<Count> count_;
  std::optional<int> schema_;  // for which `counts_` was found out
  bool counts_ = false;
  bool unsettled_ = false;
};

}  // namespace tpv::sqlite
