// The records that the shop has retired, by table, as the store keeps them at hand: made
// again only when the list's rows are others.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/database.h"

namespace tpv {

class RetiredIds {
 public:
  // Of the table ("ART", "Cli"…). Reads the whole list unless it is the one known already:
  // for a connection that KeepsLists(). Valid until the next call. Throws DatabaseError.
  const std::set<std::int32_t>& Of(Connection& connection, std::string_view table);

 private:
  std::set<std::int32_t>& Named(std::string_view table);

  std::int64_t rows_ = 0;  // Recordset::RowsIdentity
  std::vector<std::pair<std::string, std::set<std::int32_t>>> tables_;
};

}  // namespace tpv
