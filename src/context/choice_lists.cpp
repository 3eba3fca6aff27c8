#include "context/choice_lists.h"

#include <utility>
#include <vector>

#include "base/mask.h"

namespace tpv {

namespace {

ui::Entries Make(Recordset& rows, const ChoiceList& list) {
  std::vector<std::string> entries;
  if (*list.first != '\0') entries.emplace_back(list.first);
  const bool numeric = *list.mask != '\0';
  const std::size_t code = rows.IndexOf(list.code);
  const std::size_t name = rows.IndexOf(list.name);
  for (; !rows.Eof(); rows.MoveNext()) {
    std::string& entry = entries.emplace_back(
        numeric ? FormatNumber(rows.Field(code).NumberOr(0), list.mask) : rows.Field(code).TextOr(""));
    entry.append(" - ").append(rows.Field(name).TextOr(""));
  }
  return ui::Entries(std::move(entries));
}

}  // namespace

ui::Entries ChoiceLists::Entries(Connection& connection, const ChoiceList& list) {
  const auto rows = connection.Execute(list.statement);
  Made& made = made_[list.statement];
  const std::int64_t identity = rows->RowsIdentity();
  if (identity == 0 || identity != made.rows) made = {identity, Make(*rows, list)};
  return made.entries;
}

}  // namespace tpv
