// What a select groups by, said so that the engine need not sort for it.
#include <algorithm>

#include "adapters/sqlite/dialect/printer.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

bool Holds(const std::vector<std::string>& terms, const std::string& term) {
  return std::find(terms.begin(), terms.end(), term) != terms.end();
}

// The key of the one table whose columns, the key among them, are all that is grouped by:
// it tells the groups apart alone, and they come in the order of an index. "" for none.
std::string KeyOfGroups(const Scope& scope) {
  for (const Source& source : scope.sources) {
    if (source.table == nullptr || !source.table->identity) continue;
    const std::string column = Delimited(source.alias) + ".";
    std::string key = column + Delimited(source.table->columns[0].name);
    const auto is_of_table = [&](const std::string& term) { return term.starts_with(column); };
    if (Holds(scope.terms, key) && std::all_of(scope.terms.begin(), scope.terms.end(), is_of_table)) return key;
  }
  return {};
}

}  // namespace

// A table's texts need not be compared where its key is.
std::string Printer::PrintGroup(const Select& select) {
  std::vector<std::string> terms;
  std::vector<std::string> without_texts;
  for (const NodePtr& node : select.group_by) {
    const Printed term = Print(*node);
    if (term.literal) throw DatabaseError("GROUP BY pide columnas, no valores", "42000", 164);
    scopes_.back().terms.push_back(WithoutNumbers(term.text));
    terms.push_back(term.text + (term.type == SqlType::Text ? " COLLATE TPV" : ""));
    if (term.type != SqlType::Text) without_texts.push_back(term.text);
  }
  const std::string key = KeyOfGroups(scopes_.back());
  if (!key.empty()) {
    terms = select.next ? std::vector<std::string>() : Ordered(select);
    if (terms.empty()) {
      terms = std::move(without_texts);
    } else {
      terms.push_back(scopes_.back().last_in_order = key);
    }
  }
  return " GROUP BY " + JoinText(terms, ", ");
}

// The columns of ORDER BY where these are what the select groups by, and rise; else none.
std::vector<std::string> Printer::Ordered(const Select& select) {
  std::vector<std::string> columns;
  for (const OrderItem& item : select.order_by) {
    const auto shown = std::find_if(select.items.begin(), select.items.end(), [&](const SelectItem& shown_item) {
      return item.value->qualifier.empty() && EqualNoCase(ItemName(shown_item), item.value->text);
    });
    const Node& value = shown == select.items.end() ? *item.value : *shown->value;
    if (value.kind != NodeKind::Column || item.descending) return {};
    const Printed column = Print(value);
    if (column.type == SqlType::Text || !Holds(scopes_.back().terms, column.text)) return {};
    columns.push_back(column.text);
  }
  return columns;
}

}  // namespace tpv::dialect
