// The store's memory of months: a table of its own, which triggers on the sales empty.
#pragma once

#include <map>
#include <string>

#include "adapters/sqlite/store_file.h"
#include "platform/month_memory.h"

namespace tpv::sqlite {

// The table's own text, and its triggers' by their names.
extern const char* const kKeptMonthsTable;
std::map<std::string, std::string> KeptMonthsTriggers();

class KeptMonths : public MonthMemory {
 public:
  // The handle outlives it.
  explicit KeptMonths(sqlite3* handle) : handle_(handle) {}

  std::string Recall(std::string_view month) override;
  std::string Announce(std::string_view month) override;
  void Keep(std::string_view month, std::string_view mark, std::string_view text) override;

 private:
  sqlite3* handle_;
};

}  // namespace tpv::sqlite
