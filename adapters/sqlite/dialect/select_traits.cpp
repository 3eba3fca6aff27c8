#include "adapters/sqlite/dialect/select_traits.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "data/schema.h"

namespace tpv::dialect {

namespace {

bool HasAggregate(const Node& node) {
  if (node.kind == NodeKind::Call && IsAggregate(node.text)) return true;
  return std::any_of(node.kids.begin(), node.kids.end(),
                     [](const NodePtr& kid) { return kid && HasAggregate(*kid); });
}

// Whether a value is the same for all rows of the table.
bool IsFixed(const Node& value, const schema::Table& table) {
  if (value.kind == NodeKind::Literal) return true;
  return value.kind == NodeKind::Column && table.Find(value.text) < 0;
}

bool AsksForKey(const Node& condition, const schema::Table& table) {
  if (condition.kind == NodeKind::Paren) return AsksForKey(*condition.kids[0], table);
  if (condition.kind != NodeKind::Binary) return false;
  if (condition.text == "AND") {
    return AsksForKey(*condition.kids[0], table) || AsksForKey(*condition.kids[1], table);
  }
  if (condition.text != "=") return false;
  const auto is_key = [&](const Node& side) {
    return side.kind == NodeKind::Column && EqualNoCase(side.text, table.columns[0].name);
  };
  const Node& left = *condition.kids[0];
  const Node& right = *condition.kids[1];
  return (is_key(left) && IsFixed(right, table)) || (is_key(right) && IsFixed(left, table));
}

bool IsAskedByKey(const Select& select) {
  if (select.from.size() != 1 || !select.where || select.next) return false;
  const schema::Table* table = schema::FindTable(select.from[0].table);
  const bool has_key = table != nullptr && (table->identity || table->keyed);
  return has_key && AsksForKey(*select.where, *table);
}

}  // namespace

bool IsAggregate(std::string_view function) {
  constexpr std::array<std::string_view, 6> kAggregates = {"sum", "count", "min",
                                                              "max", "avg",   "count_big"};
  return std::find(kAggregates.begin(), kAggregates.end(), function) != kAggregates.end();
}

bool Aggregates(const Select& select) {
  return std::any_of(select.items.begin(), select.items.end(),
                     [](const SelectItem& item) { return HasAggregate(*item.value); });
}

bool GivesOneRow(const Select& select) {
  if (select.next) return false;
  if (select.top == 1 || select.from.empty()) return true;
  return (Aggregates(select) && select.group_by.empty()) || IsAskedByKey(select);
}

}  // namespace tpv::dialect
