#include "adapters/sqlite/dialect/printer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "adapters/sqlite/dialect/distinct_leap.h"
#include "adapters/sqlite/dialect/select_traits.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

const schema::Table& TableNamed(const std::string& name) {
  const schema::Table* table = schema::FindTable(name);
  if (table == nullptr) throw DatabaseError("No existe la tabla «" + name + "»", "42S02", 208);
  return *table;
}

std::string Qualified(const schema::Table& table) {
  return "main." + Delimited(table.name);  // the catalogue's too
}

Source SourceOf(const schema::Table& table, std::string alias) {
  Source source{std::move(alias), {}, &table, {}};
  for (const schema::Column& column : table.columns) {
    source.columns.push_back({std::string(column.name), TypeOf(column), &column});
  }
  return source;
}

// The columns of a UNION so far with those of its next part.
void Unite(std::vector<ResultColumn>& columns, const std::vector<ResultColumn>& next) {
  if (columns.size() != next.size()) {
    throw DatabaseError("Las partes de UNION tienen distinto número de columnas", "42000", 205);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const SqlType common = Common(columns[i].type, next[i].type);
    for (const SqlType type : {columns[i].type, next[i].type}) {
      const bool reads = type == SqlType::Text || common == SqlType::DateTime;
      if (reads && type != common && type != SqlType::Null) {
        throw DatabaseError("Las partes de UNION mezclan tipos de datos", "42000", 206);
      }
    }
    columns[i].type = common;
    columns[i].column = nullptr;
  }
}

}  // namespace

std::string Delimited(std::string_view name) {
  return "\"" + ReplaceAll(name, "\"", "\"\"") + "\"";
}

std::string JoinText(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string text;
  for (const std::string& piece : pieces) {
    if (!text.empty()) text += separator;
    text += piece;
  }
  return text;
}

std::string ItemName(const SelectItem& item) {
  if (!item.alias.empty()) return item.alias;
  return item.value->kind == NodeKind::Column ? item.value->text : std::string();
}

std::string NameOf(const ResultColumn& column) { return column.name.empty() ? "v" : column.name; }

std::string WithoutNumbers(std::string_view text) {
  std::string result;
  bool number = false;
  for (const char c : text) {
    number = c == '?' || (number && IsDigit(c));
    if (!number || c == '?') result += c;
  }
  return result;
}

void Printer::Enter(const schema::Table& table) {
  scopes_.push_back({{SourceOf(table, std::string(table.name))}, false, 0, {}});
}

std::string Printer::PrintSelect(const Select& select, std::vector<ResultColumn>& columns) {
  if (select.next) return PrintCompound(select, columns);
  std::string text = PrintCore(select, columns);
  text += PrintOrder(select, columns);
  scopes_.pop_back();
  if (select.top >= 0) text += " LIMIT " + std::to_string(select.top);
  return text;
}

// UNION and its kin: a part with TOP is limited on its own, the order is of all.
std::string Printer::PrintCompound(const Select& select, std::vector<ResultColumn>& columns) {
  std::string text;
  for (const Select* part = &select; part != nullptr; part = part->next.get()) {
    std::vector<ResultColumn> own;
    std::string core = PrintCore(*part, own);
    scopes_.pop_back();
    if (part->top >= 0) {
      core = "SELECT * FROM (" + core + " LIMIT " + std::to_string(part->top) + ")";
    }
    text += core + (part->next ? " " + part->set_operator + " " : "");
    if (part == &select) columns = own;
    Unite(columns, own);
  }
  return text + PrintOrder(select, columns);
}

// Leaves its scope open for the ORDER BY.
std::string Printer::PrintCore(const Select& select, std::vector<ResultColumn>& columns) {
  const std::string from = PrintFrom(select);
  std::string rest;
  if (select.where) rest = " WHERE " + PrintCondition(*select.where);
  if (!select.group_by.empty()) rest += PrintGroup(select);
  scopes_.back().grouped = !select.group_by.empty() || select.having || Aggregates(select);
  if (select.having) rest += " HAVING " + PrintCondition(*select.having);
  const std::string items = PrintItems(select, columns);
  return (select.distinct ? "SELECT DISTINCT " : "SELECT ") + items + from + rest;
}

std::string Printer::PrintFrom(const Select& select) {
  scopes_.emplace_back();
  std::string text;
  for (const FromItem& item : select.from) {
    text += text.empty() ? " FROM " : item.join == "," ? ", " : " " + item.join + " ";
    text += PrintSource(item);
    if (!item.on) continue;
    std::string condition = PrintCondition(*item.on);
    text += " ON " + condition;
    scopes_.back().sources.back().joined_on = std::move(condition);
  }
  return text;
}

std::string Printer::PrintSource(const FromItem& item) {
  if (item.derived) {
    Scope own = std::move(scopes_.back());
    scopes_.pop_back();
    Source source{item.alias, {}, nullptr, {}};
    const std::string text = "(" + PrintSelect(*item.derived, source.columns) + ")";
    scopes_.push_back(std::move(own));
    scopes_.back().sources.push_back(std::move(source));
    return text + " AS " + Delimited(item.alias);
  }
  const schema::Table& table = TableNamed(item.table);
  const std::string alias = item.alias.empty() ? std::string(table.name) : item.alias;
  scopes_.back().sources.push_back(SourceOf(table, alias));
  return Qualified(table) + " AS " + Delimited(alias);
}

// Every value gets a name, so that a select around this one can read it; texts
// that are compared with each other keep how texts compare.
std::string Printer::PrintItems(const Select& select, std::vector<ResultColumn>& columns) {
  const bool compared = select.distinct || !select.set_operator.empty();
  std::vector<std::string> items;
  for (const SelectItem& item : select.items) {
    if (item.value->kind == NodeKind::Star) {
      items.push_back(PrintStar(item.value->qualifier, columns));
      continue;
    }
    const Printed value = Print(*item.value);
    const bool collated = compared && value.type == SqlType::Text;
    columns.push_back({ItemName(item), value.type, value.column});
    items.push_back(value.text + (collated ? " COLLATE TPV" : "") + " AS " +
                    Delimited(NameOf(columns.back())));
  }
  return JoinText(items, ", ");
}

std::string Printer::PrintStar(const std::string& qualifier, std::vector<ResultColumn>& columns) {
  std::vector<std::string> items;
  const Scope& scope = scopes_.back();
  for (const Source& source : scope.sources) {
    if (!qualifier.empty() && !EqualNoCase(source.alias, qualifier)) continue;
    for (const ResultColumn& column : source.columns) {
      columns.push_back(column);
      items.push_back(PrintSourceColumn(scope, source, column.name));
    }
  }
  if (items.empty()) throw DatabaseError("No hay columnas para «" + qualifier + ".*»", "42000");
  return JoinText(items, ", ");
}

// The index of the result column that a term names by position or by name; -1
// for an expression.
int Printer::OrderPosition(const Node& node, const std::vector<ResultColumn>& columns) {
  if (node.kind == NodeKind::Literal) {
    const int position = node.literal == LiteralKind::Whole ? std::atoi(node.text.c_str()) : 0;
    if (position >= 1 && position <= static_cast<int>(columns.size())) return position - 1;
    throw DatabaseError("ORDER BY: no hay columna «" + node.text + "»", "42000", 108);
  }
  if (node.kind != NodeKind::Column || !node.qualifier.empty()) return -1;
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const ResultColumn& column) {
    return EqualNoCase(column.name, node.text);
  });
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

std::string Printer::PrintOrder(const Select& select, const std::vector<ResultColumn>& columns) {
  std::vector<std::string> terms;
  for (const OrderItem& item : select.order_by) {
    const int position = OrderPosition(*item.value, columns);
    if (position < 0 && select.next) {
      throw DatabaseError("ORDER BY de una UNION: solo columnas del resultado", "42000", 104);
    }
    const Printed term = position < 0 ? Print(*item.value)
                                      : Printed{std::to_string(position + 1), columns[position].type};
    terms.push_back(term.text + (term.type == SqlType::Text ? " COLLATE TPV" : "") +
                    (item.descending ? " DESC" : ""));
  }
  if (!select.next && !scopes_.back().last_in_order.empty()) terms.push_back(scopes_.back().last_in_order);
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
  result.table = &table;
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
      values.push_back(Stored({aliases.back(), columns[i].type, false, false, {}, columns[i].column}, *targets[i]));
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
  result.table = &table;
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
  result.table = &table;
  result.text = "DELETE FROM " + Qualified(table);
  if (statement.where) result.text += " WHERE " + printer.PrintCondition(*statement.where);
  return result;
}

// The reference table of a select that has nothing but its columns, else null.
const schema::Table* ReferenceOf(const Select& select, std::string_view shape) {
  const bool plain = select.from.size() == 1 && !select.from[0].derived && !select.where &&
                     !select.next && shape.find_first_of("(@") == std::string_view::npos;
  const schema::Table* table = plain ? schema::FindTable(select.from[0].table) : nullptr;
  return table != nullptr && table->reference ? table : nullptr;
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
  if (auto leap = LeapThroughIndex(*statement.select)) result.text = std::move(*leap);
  result.table = ReferenceOf(*statement.select, shape);
  return result;
}

}  // namespace tpv::dialect
