#include "host/archive/soundness.h"

#include "adapters/sqlite/sqlite_connection.h"
#include "host/store_check.h"

namespace tpv::archive {

std::string WhatIsBroken(const std::string& path, const Clock& clock) {
  SqliteConnection store(path, clock, OpenMode::AsItIs);
  const auto damage = store.Damage();
  if (!damage.empty()) return damage.front();
  const auto findings = CheckStore(store);
  return AnyBroken(findings) ? FindingsText(findings) : std::string();
}

}  // namespace tpv::archive
