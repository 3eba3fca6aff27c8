#include "context/retired_ids.h"

#include "base/text.h"

namespace tpv {

const std::set<std::int32_t>& RetiredIds::Of(Connection& connection, std::string_view table) {
  const auto rows = connection.Execute("SELECT baja_tabla, baja_idreg FROM Bajas");
  const std::int64_t identity = rows->RowsIdentity();
  if (identity == 0 || identity != rows_) {
    rows_ = 0;  // until they are read to the end
    tables_.clear();
    for (; !rows->Eof(); rows->MoveNext()) Named(rows->Field(0).ToText()).insert(rows->Field(1).ToInt32());
    rows_ = identity;
  }
  return Named(table);
}

std::set<std::int32_t>& RetiredIds::Named(std::string_view table) {
  for (auto& [name, ids] : tables_) {
    if (EqualNoCase(name, table)) return ids;
  }
  return tables_.emplace_back(table, std::set<std::int32_t>()).second;
}

}  // namespace tpv
