#include "adapters/sqlite/dialect/distinct_leap.h"

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

}  // namespace

std::optional<std::string> LeapThroughIndex(const Select& select) {
  if (!AsksForOneColumn(select)) return std::nullopt;
  const std::string& name = select.items[0].value->text;
  const schema::Table* table = schema::FindTable(select.from[0].table);
  const schema::Column* column = table == nullptr ? nullptr : schema::LeadingColumn(*table, name);
  if (column == nullptr) return std::nullopt;
  const std::string from = " FROM main." + Delimited(table->name);
  const std::string value = Delimited(column->name);
  return "WITH RECURSIVE leap(v) AS (SELECT min(" + value + ")" + from + " UNION ALL SELECT (SELECT min(" + value +
         ")" + from + " WHERE " + value + " > v) FROM leap WHERE v IS NOT NULL) SELECT NULL AS " + Delimited(name) +
         " WHERE EXISTS (SELECT 1" + from + " WHERE " + value +
         " IS NULL) UNION ALL SELECT v FROM leap WHERE v IS NOT NULL ORDER BY 1";
}

}  // namespace tpv::dialect
