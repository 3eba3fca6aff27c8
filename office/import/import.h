// Takes a file of articles, customers or stocks into the shop: looked at first, then
// stored all or nothing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "office/refusal.h"

namespace tpv {
class Connection;
class TableFiles;
}  // namespace tpv

namespace tpv::office {

enum class ImportKind { Articles, Customers, Stock };

struct ImportOrder {
  ImportKind kind = ImportKind::Articles;
  std::string path;
};

// What would be stored of one line, or was.
struct ImportLine {
  long line = 0;
  std::string key;      // the code, as the file writes it
  bool added = false;   // else changed
  std::string changes;  // the columns that change: "precio, existencias"; if added, its cells
};

struct ImportReport {
  long added = 0;
  long changed = 0;
  long same = 0;
  long refused = 0;               // lines with a refusal, or 1 for the file as a whole
  std::vector<ImportLine> lines;  // the first of those added and changed
  Refusals refusals;              // the first of them
  bool stored = false;
};

inline constexpr std::size_t kLinesReported = 1000;

// What StoreImport would do; changes nothing and keeps no till waiting. Both tell how far
// they are as pulses, and leave the store as it was when one throws. Throws DatabaseError.
ImportReport PreviewImport(Connection& connection, TableFiles& files, const ImportOrder& order);

// Stores the file in one transaction, all of it or nothing: every line is checked in
// it against what the store holds then. Other tills' writing waits meanwhile.
// `before_commit` is called when no way leads back. Throws DatabaseError, and then
// nothing is stored.
ImportReport StoreImport(Connection& connection, TableFiles& files, const ImportOrder& order,
                         const std::function<void()>& before_commit = {});

}  // namespace tpv::office
