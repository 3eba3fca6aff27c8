#include <algorithm>

#include "adapters/sqlite/dialect/printer.h"
#include "adapters/sqlite/dialect/select_traits.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

bool IsNumeric(SqlType type) {
  return type == SqlType::Bit || type == SqlType::Int || type == SqlType::Float ||
         type == SqlType::Money;
}

Printed Condition(std::string text) { return {std::move(text), SqlType::Bit, false, true}; }

}  // namespace

Printed Printer::Print(const Node& node) {
  Printed value = PrintAny(node);
  if (value.condition) {
    throw DatabaseError("Una condición no es un valor: cerca de «" + node.text + "»", "42000", 102);
  }
  return value;
}

std::string Printer::PrintCondition(const Node& node) {
  const Printed condition = PrintAny(node);
  if (condition.condition) return condition.text;
  throw DatabaseError("Se esperaba una condición y no un valor", "42000", 4145);
}

// An expression that the select groups by may hold columns that it does not.
Printed Printer::PrintAny(const Node& node) {
  if (scopes_.empty() || !scopes_.back().grouped || scopes_.back().aggregates > 0 ||
      node.kind == NodeKind::Column) {
    return PrintUngrouped(node);
  }
  scopes_.back().grouped = false;
  Printed whole = PrintUngrouped(node);
  scopes_.back().grouped = true;
  const auto& terms = scopes_.back().terms;
  const bool is_term = std::find(terms.begin(), terms.end(), WithoutNumbers(whole.text)) != terms.end();
  return is_term ? whole : PrintUngrouped(node);
}

Printed Printer::PrintUngrouped(const Node& node) {
  switch (node.kind) {
    case NodeKind::Literal: {
      const SqlType types[] = {SqlType::Null, SqlType::Int, SqlType::Float, SqlType::Text};
      return {node.text, types[static_cast<int>(node.literal)], true};
    }
    case NodeKind::Column:
      return PrintColumn(node);
    case NodeKind::Star:
      throw DatabaseError("Sintaxis incorrecta en la sentencia cerca de «*»", "42000");
    case NodeKind::Call:
      return PrintCall(node);
    case NodeKind::Cast:
      return PrintCast(node);
    case NodeKind::Unary:
      return PrintUnary(node);
    case NodeKind::Binary:
      return PrintBinary(node);
    case NodeKind::Case:
      return PrintCase(node);
    case NodeKind::Subquery:
      return PrintSubquery(*node.select);
    case NodeKind::Exists: {
      std::vector<ResultColumn> columns;
      return Condition("EXISTS (" + PrintSelect(*node.select, columns) + ")");
    }
    case NodeKind::In:
      return PrintIn(node);
    case NodeKind::Between:
      return PrintBetween(node);
    case NodeKind::Like:
      return PrintLike(node);
    case NodeKind::IsNull:
      return Condition("(" + Print(*node.kids[0]).text +
                       (node.negated ? " IS NOT NULL)" : " IS NULL)"));
    default: {
      Printed value = PrintAny(*node.kids[0]);
      value.text = "(" + value.text + ")";
      return value;
    }
  }
}

Printed Printer::PrintUnary(const Node& node) {
  if (node.text == "NOT") return Condition("(NOT " + PrintCondition(*node.kids[0]) + ")");
  const Printed value = Print(*node.kids[0]);
  if (!IsNumeric(value.type) && value.type != SqlType::Null) {
    throw DatabaseError("Operación no admitida con textos ni fechas: «-»", "42000", 8117);
  }
  return {"(- " + value.text + ")", value.type, value.literal};
}

Printed Printer::PrintColumn(const Node& node) {
  if (EqualNoCase(node.text, "@@IDENTITY")) return {"last_insert_rowid()", SqlType::Int};
  // NOLINTNEXTLINE(modernize-loop-convert): reversed views fail with clang 14
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const Source* found_in = nullptr;
    const ResultColumn* found = nullptr;
    for (const Source& source : scope->sources) {
      if (!node.qualifier.empty() && !EqualNoCase(node.qualifier, source.alias)) continue;
      for (const ResultColumn& column : source.columns) {
        if (!EqualNoCase(column.name, node.text)) continue;
        if (found != nullptr) {
          throw DatabaseError("El nombre de columna «" + node.text + "» es ambiguo", "42000", 209);
        }
        found = &column;
        found_in = &source;
      }
    }
    if (found == nullptr) continue;
    return {PrintSourceColumn(*scope, *found_in, found->name), found->type, false, false, {}, found->column};
  }
  const std::string name = node.qualifier.empty() ? node.text : node.qualifier + "." + node.text;
  throw DatabaseError("No existe la columna «" + name + "»", "42S22", 207);
}

// A column that a grouped select shows must be one that it groups by.
std::string Printer::PrintSourceColumn(const Scope& scope, const Source& source,
                                       std::string_view name) {
  std::string text = Delimited(source.alias) + "." + Delimited(name);
  const bool free = !scope.grouped || scope.aggregates > 0 ||
                    std::find(scope.terms.begin(), scope.terms.end(), text) != scope.terms.end();
  if (free) return text;
  throw DatabaseError("La columna «" + std::string(name) + "» no está en GROUP BY", "42000", 8120);
}

Printed Printer::PrintBinary(const Node& node) {
  if (node.text == "AND" || node.text == "OR") {
    return Condition("(" + PrintCondition(*node.kids[0]) + " " + node.text + " " +
                     PrintCondition(*node.kids[1]) + ")");
  }
  const Printed left = Print(*node.kids[0]);
  const Printed right = Print(*node.kids[1]);
  const bool arithmetic = std::string_view("+-*/%").find(node.text) != std::string_view::npos;
  return arithmetic ? PrintArithmetic(node.text, left, right)
                    : PrintComparison(node.text, left, right);
}

Printed Printer::PrintArithmetic(const std::string& op, const Printed& left, const Printed& right) {
  const SqlType type = Common(left.type, right.type);
  if (op == "+" && type == SqlType::Text) {
    return {"(" + left.text + " || " + right.text + ")", type};
  }
  if (type == SqlType::DateTime) {
    if (left.type != type || right.type != SqlType::Int || (op != "+" && op != "-")) {
      throw DatabaseError("Operación no admitida con fechas: «" + op + "»", "42000", 402);
    }
    const std::string days = op == "-" ? "(- " + right.text + ")" : right.text;
    return {"tpv_dateadd('day', " + days + ", " + left.text + ")", type};
  }
  if (type == SqlType::Text || (op == "%" && type != SqlType::Int)) {
    throw DatabaseError("Operación no admitida con esos tipos de datos: «" + op + "»", "42000", 402);
  }
  return PrintNumbers(op, left, right, type);
}

// A fraction stays one when both numbers happen to be whole.
Printed Printer::PrintNumbers(const std::string& op, const Printed& left, const Printed& right,
                              SqlType type) {
  const bool divides = op == "/" || op == "%";
  const bool fraction = divides && type != SqlType::Int && left.type != type;
  const bool adds = op == "+" || op == "-";
  const bool goes_on = adds && type == SqlType::Money && !left.sum.empty();
  const std::string a = goes_on    ? left.sum
                        : fraction ? ConvertedTo(left, SqlType::Float)
                                   : ReadAs(left, type);
  const bool safe_divisor = right.literal && right.text[0] != '?' && right.text != "0";
  const std::string b = ReadAs(right, type);
  const std::string text =
      "(" + a + " " + op + " " + (divides && !safe_divisor ? "tpv_divisor(" + b + ")" : b) + ")";
  // Money added up stays within its four decimals until the end.
  if (type == SqlType::Money) {
    return {"tpv_money(" + text + ")", type, false, false, adds ? text : std::string()};
  }
  return {text, type == SqlType::Bit ? SqlType::Int : type, left.literal && right.literal};
}

// A bit is compared with a constant as with a bit: all but zero is one.
Printed Printer::PrintComparison(const std::string& op, const Printed& left, const Printed& right) {
  const auto as_bit = [](const Printed& value, const Printed& other) {
    return value.literal && value.type == SqlType::Int && other.type == SqlType::Bit;
  };
  if (as_bit(left, right)) {
    return PrintComparison(op, {"(" + left.text + " <> 0)", SqlType::Bit}, right);
  }
  if (as_bit(right, left)) {
    return PrintComparison(op, left, {"(" + right.text + " <> 0)", SqlType::Bit});
  }
  const SqlType type = Common(left.type, right.type);
  const std::string collate = type == SqlType::Text ? " COLLATE TPV" : "";
  return Condition("(" + ReadAs(left, type) + " " + op + " " + ReadAs(right, type) + collate + ")");
}

Printed Printer::PrintIn(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  SqlType type = value.type;
  std::string list;
  if (node.select) {
    std::vector<ResultColumn> columns;
    list = PrintSelect(*node.select, columns);
    if (columns.size() != 1) {
      throw DatabaseError("La subconsulta de IN debe tener una sola columna", "42000", 116);
    }
    type = Common(type, columns[0].type);
    if (columns[0].type != type && ReadAs({"x", columns[0].type}, type) != "x") {
      list = "SELECT " + ReadAs({Delimited(NameOf(columns[0])), columns[0].type}, type) + " FROM (" +
             list + ")";
    }
  } else {
    std::vector<Printed> items;
    for (std::size_t i = 1; i < node.kids.size(); ++i) {
      items.push_back(Print(*node.kids[i]));
      type = Common(type, items.back().type);
    }
    for (const Printed& item : items) list += (list.empty() ? "" : ", ") + ReadAs(item, type);
  }
  return Condition("(" + ReadAs(value, type) + (type == SqlType::Text ? " COLLATE TPV" : "") +
                   (node.negated ? " NOT IN (" : " IN (") + list + "))");
}

Printed Printer::PrintBetween(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  const Printed low = PrintComparison(">=", value, Print(*node.kids[1]));
  const Printed high = PrintComparison("<=", value, Print(*node.kids[2]));
  return Condition((node.negated ? "(NOT (" : "((") + low.text + " AND " + high.text + "))");
}

Printed Printer::PrintLike(const Node& node) {
  const std::string call = "tpv_like(" + ConvertedTo(Print(*node.kids[0]), SqlType::Text) + ", " +
                           ConvertedTo(Print(*node.kids[1]), SqlType::Text) + ")";
  return Condition(node.negated ? "(NOT " + call + ")" : call);
}

Printed Printer::PrintCase(const Node& node) {
  const Printed operand = node.kids.front() ? Print(*node.kids.front()) : Printed();
  std::vector<std::string> conditions;
  std::vector<Printed> results;
  SqlType type = SqlType::Null;
  for (std::size_t i = 1; i + 1 < node.kids.size(); i += 2) {
    conditions.push_back(node.kids.front()
                             ? PrintComparison("=", operand, Print(*node.kids[i])).text
                             : PrintCondition(*node.kids[i]));
    results.push_back(Print(*node.kids[i + 1]));
  }
  if (node.kids.back()) results.push_back(Print(*node.kids.back()));
  for (const Printed& result : results) type = Common(type, result.type);
  std::string text = "(CASE";
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    text += " WHEN " + conditions[i] + " THEN " + ConvertedTo(results[i], type);
  }
  if (node.kids.back()) text += " ELSE " + ConvertedTo(results.back(), type);
  return {text + " END)", type};
}

Printed Printer::PrintCast(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  const std::string& type = node.text;
  const std::string style = node.kids.size() > 1 ? Print(*node.kids[1]).text : "0";
  const auto is = [&](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), type) != names.end();
  };
  if (is({"money", "smallmoney"})) return {ConvertedTo(value, SqlType::Money), SqlType::Money};
  if (is({"float", "real"})) return {ConvertedTo(value, SqlType::Float), SqlType::Float};
  if (is({"decimal", "numeric"})) {
    return {"tpv_round(" + ConvertedTo(value, SqlType::Float) + ", " + std::to_string(node.scale) +
                ")",
            SqlType::Float};
  }
  if (is({"int", "smallint", "bigint", "tinyint"})) {
    return {ConvertedTo(value, SqlType::Int), SqlType::Int};
  }
  if (is({"bit"})) return {ConvertedTo(value, SqlType::Bit), SqlType::Bit};
  if (is({"datetime", "smalldatetime", "date"})) {
    const bool styled = style != "0" && value.type == SqlType::Text;
    const std::string date = styled ? "tpv_date_styled(" + value.text + ", " + style + ")"
                                    : ConvertedTo(value, SqlType::DateTime);
    return {type == "date" ? "tpv_day(" + date + ")" : date, SqlType::DateTime};
  }
  if (is({"varchar", "nvarchar"})) {
    const int length = node.size == 0 ? 30 : node.size;  // what the dialect gives without one
    return {"tpv_string(" + value.text + ", '" + TypeLetter(value.type) + "', " + style + ", " +
                std::to_string(length) + ")",
            SqlType::Text};
  }
  throw DatabaseError("Tipo no admitido: «" + type + "»", "42000", 243);
}

// One row at most, as SQL Server demands; SQLite would take the first of many.
Printed Printer::PrintSubquery(const Select& select) {
  std::vector<ResultColumn> columns;
  const std::string text = PrintSelect(select, columns);
  if (columns.size() != 1) {
    throw DatabaseError("La subconsulta debe tener una sola columna", "42000", 116);
  }
  if (GivesOneRow(select)) return {"(" + text + ")", columns[0].type};
  const bool limited = select.top >= 0 && !select.next;
  return {"(SELECT CASE WHEN count(*) > 1 THEN tpv_one_row() ELSE max(" +
              Delimited(NameOf(columns[0])) + ") END FROM (" + text + (limited ? "" : " LIMIT 2") +
              "))",
          columns[0].type};
}

}  // namespace tpv::dialect
