#include "adapters/sqlite/dialect/printer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

std::string Delimited(std::string_view name) {
  return "\"" + ReplaceAll(name, "\"", "\"\"") + "\"";
}

const schema::Table& TableNamed(const std::string& name) {
  const schema::Table* table = schema::FindTable(name);
  if (table == nullptr) throw DatabaseError("No existe la tabla «" + name + "»", "42S02", 208);
  return *table;
}

std::string Qualified(const schema::Table& table) {
  return (table.home == schema::Home::Catalogue ? "zrcomun." : "main.") + Delimited(table.name);
}

Source SourceOf(const schema::Table& table, std::string alias) {
  Source source{std::move(alias), {}};
  for (const schema::Column& column : table.columns) {
    source.columns.push_back({std::string(column.name), TypeOf(column)});
  }
  return source;
}

std::string JoinText(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string text;
  for (const std::string& piece : pieces) {
    if (!text.empty()) text += separator;
    text += piece;
  }
  return text;
}

// A select's own name for an item: the alias, or the column's name.
std::string ItemName(const SelectItem& item) {
  if (!item.alias.empty()) return item.alias;
  return item.value->kind == NodeKind::Column ? item.value->text : std::string();
}

}  // namespace

void Printer::Enter(const schema::Table& table) {
  scopes_.push_back({SourceOf(table, std::string(table.name))});
}

std::string Printer::PrintSelect(const Select& select, std::vector<ResultColumn>& columns) {
  std::string text = PrintCore(select, columns);
  const Scope first_scope = scopes_.back();
  scopes_.pop_back();
  for (const Select* part = &select; part->next; part = part->next.get()) {
    std::vector<ResultColumn> ignored;
    text += " " + part->set_operator + " " + PrintCore(*part->next, ignored);
    scopes_.pop_back();
  }
  scopes_.push_back(first_scope);
  text += PrintOrder(select, columns);
  scopes_.pop_back();
  if (select.top >= 0) text += " LIMIT " + std::to_string(select.top);
  return text;
}

// Leaves its scope open for the ORDER BY.
std::string Printer::PrintCore(const Select& select, std::vector<ResultColumn>& columns) {
  std::string alias = std::exchange(value_alias_, {});
  const std::string from = PrintFrom(select);
  value_alias_ = std::move(alias);
  std::string text = "SELECT ";
  if (select.distinct) text += "DISTINCT ";
  text += PrintItems(select, columns) + from;
  if (select.where) text += " WHERE " + PrintCondition(*select.where);
  if (!select.group_by.empty()) text += PrintGroup(select);
  if (select.having) text += " HAVING " + PrintCondition(*select.having);
  return text;
}

std::string Printer::PrintFrom(const Select& select) {
  scopes_.emplace_back();
  std::string text;
  for (const FromItem& item : select.from) {
    text += text.empty() ? " FROM " : item.join == "," ? ", " : " " + item.join + " ";
    text += PrintSource(item);
    if (item.on) text += " ON " + PrintCondition(*item.on);
  }
  return text;
}

std::string Printer::PrintSource(const FromItem& item) {
  if (item.derived) {
    Scope own = std::move(scopes_.back());
    scopes_.pop_back();
    Source source{item.alias, {}};
    const std::string text = "(" + PrintSelect(*item.derived, source.columns) + ")";
    scopes_.push_back(std::move(own));
    scopes_.back().push_back(std::move(source));
    return text + " AS " + Delimited(item.alias);
  }
  const schema::Table& table = TableNamed(item.table);
  const std::string alias = item.alias.empty() ? std::string(table.name) : item.alias;
  scopes_.back().push_back(SourceOf(table, alias));
  return Qualified(table) + " AS " + Delimited(alias);
}

std::string Printer::PrintItems(const Select& select, std::vector<ResultColumn>& columns) {
  const std::string alias = std::exchange(value_alias_, {});
  std::vector<std::string> items;
  for (const SelectItem& item : select.items) {
    if (item.value->kind == NodeKind::Star) {
      items.push_back(PrintStar(item.value->qualifier, columns));
      continue;
    }
    const Printed value = Print(*item.value);
    columns.push_back({ItemName(item), value.type});
    items.push_back(value.text + alias);
  }
  return JoinText(items, ", ");
}

std::string Printer::PrintStar(const std::string& qualifier, std::vector<ResultColumn>& columns) {
  std::vector<std::string> items;
  for (const Source& source : scopes_.back()) {
    if (!qualifier.empty() && !EqualNoCase(source.alias, qualifier)) continue;
    for (const ResultColumn& column : source.columns) {
      columns.push_back(column);
      items.push_back(Delimited(source.alias) + "." + Delimited(column.name));
    }
  }
  if (items.empty()) throw DatabaseError("No hay columnas para «" + qualifier + ".*»", "42000");
  return JoinText(items, ", ");
}

std::string Printer::PrintGroup(const Select& select) {
  std::vector<std::string> terms;
  for (const NodePtr& node : select.group_by) {
    const Printed term = Print(*node);
    terms.push_back(term.text + (term.type == SqlType::Text ? " COLLATE TPV" : ""));
  }
  return " GROUP BY " + JoinText(terms, ", ");
}

// Terms name a result column by position or by name before they are expressions.
std::string Printer::PrintOrder(const Select& select, const std::vector<ResultColumn>& columns) {
  std::vector<std::string> terms;
  for (const OrderItem& item : select.order_by) {
    const Node& node = *item.value;
    int position = -1;
    if (node.kind == NodeKind::Literal && node.literal == LiteralKind::Whole) {
      position = std::atoi(node.text.c_str()) - 1;
    } else if (node.kind == NodeKind::Column && node.qualifier.empty()) {
      const auto named = [&](const ResultColumn& column) {
        return EqualNoCase(column.name, node.text);
      };
      const auto found = std::find_if(columns.begin(), columns.end(), named);
      if (found != columns.end()) position = static_cast<int>(found - columns.begin());
    }
    Printed term;
    if (position >= static_cast<int>(columns.size())) {
      throw DatabaseError("ORDER BY: no hay columna «" + node.text + "»", "42000");
    }
    if (position >= 0) {
      term = {std::to_string(position + 1), columns[position].type};
    } else {
      term = Print(node);
    }
    terms.push_back(term.text + (term.type == SqlType::Text ? " COLLATE TPV" : "") +
                    (item.descending ? " DESC" : ""));
  }
  return terms.empty() ? std::string() : " ORDER BY " + JoinText(terms, ", ");
}

namespace {

Translation TranslateInsert(Statement& statement) {
  const schema::Table& table = TableNamed(statement.table);
  std::vector<const schema::Column*> targets;
  if (statement.columns.empty()) {
    for (std::size_t i = table.identity ? 1 : 0; i < table.columns.size(); ++i) {
      targets.push_back(&table.columns[i]);
    }
  }
  std::vector<std::string> names;
  for (const std::string& name : statement.columns) {
    const int index = table.Find(name);
    if (index < 0) throw DatabaseError("No existe la columna «" + name + "»", "42S22", 207);
    targets.push_back(&table.columns[index]);
  }
  for (const schema::Column* target : targets) names.push_back(Delimited(target->name));
  // The moment of writing is the store's clock, which the table's own defaults
  // cannot know.
  std::string now;
  for (const schema::Column& column : table.columns) {
    const bool given = std::find(targets.begin(), targets.end(), &column) != targets.end();
    if (column.initial != schema::Default::Now || given) continue;
    names.push_back(Delimited(column.name));
    now += ", tpv_getdate()";
  }
  Translation result;
  result.writes = true;
  result.text = "INSERT INTO " + Qualified(table) + " (" + JoinText(names, ", ") + ") ";
  const auto require_count = [&](std::size_t count) {
    if (count != targets.size()) {
      throw DatabaseError("INSERT: el número de valores no coincide con el de columnas", "21S01");
    }
  };
  Printer printer;
  if (statement.select) {
    std::vector<ResultColumn> columns;
    const std::string select = printer.PrintSelect(*statement.select, columns);
    require_count(columns.size());
    // A derived table gives every column a name to convert from.
    std::vector<std::string> aliases;
    std::vector<std::string> values;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      aliases.push_back("c" + std::to_string(i));
      values.push_back(Stored({aliases.back(), columns[i].type}, *targets[i]));
    }
    result.text = "WITH given(" + JoinText(aliases, ", ") + ") AS (" + select + ") " + result.text +
                  "SELECT " + JoinText(values, ", ") + now + " FROM given";
    return result;
  }
  std::vector<std::string> rows;
  for (const auto& row : statement.values) {
    require_count(row.size());
    std::vector<std::string> values;
    for (std::size_t i = 0; i < row.size(); ++i) {
      values.push_back(Stored(printer.Print(*row[i]), *targets[i]));
    }
    rows.push_back("(" + JoinText(values, ", ") + now + ")");
  }
  result.text += "VALUES " + JoinText(rows, ", ");
  return result;
}

Translation TranslateUpdate(Statement& statement) {
  const schema::Table& table = TableNamed(statement.table);
  Printer printer;
  printer.Enter(table);
  std::vector<std::string> sets;
  for (const auto& [name, value] : statement.sets) {
    const int index = table.Find(name);
    if (index < 0) throw DatabaseError("No existe la columna «" + name + "»", "42S22", 207);
    const schema::Column& column = table.columns[index];
    sets.push_back(Delimited(column.name) + " = " + Stored(printer.Print(*value), column));
  }
  Translation result;
  result.writes = true;
  result.text = "UPDATE " + Qualified(table) + " SET " + JoinText(sets, ", ");
  if (statement.where) result.text += " WHERE " + printer.PrintCondition(*statement.where);
  return result;
}

Translation TranslateDelete(Statement& statement) {
  const schema::Table& table = TableNamed(statement.table);
  Printer printer;
  printer.Enter(table);
  Translation result;
  result.writes = true;
  result.text = "DELETE FROM " + Qualified(table);
  if (statement.where) result.text += " WHERE " + printer.PrintCondition(*statement.where);
  return result;
}

}  // namespace

Translation Translate(const std::string& shape) {
  Statement statement = Parse(shape);
  switch (statement.kind) {
    case Statement::Kind::Insert:
      return TranslateInsert(statement);
    case Statement::Kind::Update:
      return TranslateUpdate(statement);
    case Statement::Kind::Delete:
      return TranslateDelete(statement);
    default:
      break;
  }
  Translation result;
  Printer printer;
  result.text = printer.PrintSelect(*statement.select, result.columns);
  return result;
}

}  // namespace tpv::dialect
