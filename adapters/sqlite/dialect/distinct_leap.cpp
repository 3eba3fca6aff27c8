#include "adapters/sqlite/dialect/distinct_leap.h"

#include <algorithm>

#include "adapters/sqlite/dialect/printer.h"
#include "base/text.h"

namespace tpv::dialect {

namespace {

bool IsColumn(const Node& node) { return node.kind == NodeKind::Column && node.qualifier.empty(); }

bool AsksForOneColumn(const Select& select) {
  const bool plain = select.distinct && select.top < 0 && !select.where && select.group_by.empty() &&
                     !select.having && !select.next;
  return plain && select.items.size() == 1 && select.from.size() == 1 && select.order_by.size() == 1 &&
         IsColumn(*select.items[0].value) && select.items[0].alias.empty() && !select.from[0].derived &&
         IsColumn(*select.order_by[0].value) && !select.order_by[0].descending &&
         EqualNoCase(select.order_by[0].value->text, select.items[0].value->text);
}

bool IsFirstOfAnIndex(const schema::Table& table, const schema::Column& column) {
  return std::any_of(table.indexes.begin(), table.indexes.end(), [&](const schema::Index& index) {
    return EqualNoCase(index.columns[0], column.name);
  });
}

}  // namespace

std::optional<std::string> LeapThroughIndex(const Select& select) {
  if (!AsksForOneColumn(select)) return std::nullopt;
  const std::string& name = select.items[0].value->text;
  const schema::Table* table = schema::FindTable(select.from[0].table);
  const int at = table == nullptr ? -1 : table->Find(name);
  if (at < 0 || table->columns[at].type == schema::Type::Text || !IsFirstOfAnIndex(*table, table->columns[at])) {
    return std::nullopt;
  }
  const std::string from = " FROM main." + Delimited(table->name);
  const std::string value = Delimited(table->columns[at].name);
  return "WITH RECURSIVE leap(v) AS (SELECT min(" + value + ")" + from + " UNION ALL SELECT (SELECT min(" + value +
         ")" + from + " WHERE " + value + " > v) FROM leap WHERE v IS NOT NULL) SELECT NULL AS " + Delimited(name) +
         " WHERE EXISTS (SELECT 1" + from + " WHERE " + value +
         " IS NULL) UNION ALL SELECT v FROM leap WHERE v IS NOT NULL ORDER BY 1";
}

}  // namespace tpv::dialect
