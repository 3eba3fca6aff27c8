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

bool AsksForKey(const Node& condition, std::string_view key) {
  if (condition.kind == NodeKind::Paren) return AsksForKey(*condition.kids[0], key);
  if (condition.kind != NodeKind::Binary) return false;
  if (condition.text == "AND") {
    return AsksForKey(*condition.kids[0], key) || AsksForKey(*condition.kids[1], key);
  }
  if (condition.text != "=") return false;
  return std::any_of(condition.kids.begin(), condition.kids.end(), [&](const NodePtr& side) {
    return side->kind == NodeKind::Column && EqualNoCase(side->text, key);
  });
}

bool IsAskedByKey(const Select& select) {
  if (select.from.size() != 1 || !select.where || select.next) return false;
  const schema::Table* table = schema::FindTable(select.from[0].table);
  const bool has_key = table != nullptr && (table->identity || table->keyed);
  return has_key && AsksForKey(*select.where, table->columns[0].name);
}

}  // namespace

bool IsAggregate(std::string_view function) {
  constexpr std::array<std::string_view, 6> kAggregates = {"sum", "count", "min",
                                                              "max", "avg",   "count_big"};
  return std::find(kAggregates.begin(), kAggregates.end(), function) != kAggregates.end();
}

bool GivesOneRow(const Select& select) {
  if (select.next) return false;
  if (select.top == 1 || select.from.empty()) return true;
  const bool aggregate =
      std::any_of(select.items.begin(), select.items.end(),
                  [](const SelectItem& item) { return HasAggregate(*item.value); });
  return (aggregate && select.group_by.empty()) || IsAskedByKey(select);
}

}  // namespace tpv::dialect
