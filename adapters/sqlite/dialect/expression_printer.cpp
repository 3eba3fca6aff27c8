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

// The type that two values meet in.
SqlType Common(SqlType left, SqlType right) {
  if (left == SqlType::Null) return right;
  if (right == SqlType::Null) return left;
  for (const SqlType type :
       {SqlType::DateTime, SqlType::Float, SqlType::Money, SqlType::Int, SqlType::Bit}) {
    if (left == type || right == type) return type;
  }
  return SqlType::Text;
}

std::string Column(const std::string& source, const std::string& name) {
  return "\"" + source + "\".\"" + name + "\"";
}

}  // namespace

Printed Printer::Print(const Node& node) {
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
    case NodeKind::Unary: {
      const Printed value = Print(*node.kids[0]);
      return {"(" + node.text + " " + value.text + ")", value.type, value.literal};
    }
    case NodeKind::Binary:
      return PrintBinary(node);
    case NodeKind::Case:
      return PrintCase(node);
    case NodeKind::Subquery:
      return PrintSubquery(*node.select);
    case NodeKind::Exists: {
      std::vector<ResultColumn> columns;
      return {"EXISTS (" + PrintSelect(*node.select, columns) + ")", SqlType::Bit};
    }
    case NodeKind::In:
      return PrintIn(node);
    case NodeKind::Between:
      return PrintBetween(node);
    case NodeKind::Like:
      return PrintLike(node);
    case NodeKind::IsNull:
      return {"(" + Print(*node.kids[0]).text + (node.negated ? " IS NOT NULL)" : " IS NULL)"),
              SqlType::Bit};
    default: {
      Printed value = Print(*node.kids[0]);
      value.text = "(" + value.text + ")";
      return value;
    }
  }
}

Printed Printer::PrintColumn(const Node& node) {
  if (node.text.starts_with("@@")) {
    if (EqualNoCase(node.text, "@@IDENTITY")) return {"last_insert_rowid()", SqlType::Int};
  }
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    const Source* found_in = nullptr;
    const ResultColumn* found = nullptr;
    for (const Source& source : *scope) {
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
    if (found != nullptr) return {Column(found_in->alias, found->name), found->type};
  }
  const std::string name = node.qualifier.empty() ? node.text : node.qualifier + "." + node.text;
  throw DatabaseError("No existe la columna «" + name + "»", "42S22", 207);
}

Printed Printer::PrintBinary(const Node& node) {
  const Printed left = Print(*node.kids[0]);
  const Printed right = Print(*node.kids[1]);
  if (node.text == "AND" || node.text == "OR") {
    return {"(" + left.text + " " + node.text + " " + right.text + ")", SqlType::Bit};
  }
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
    if (!IsNumeric(right.type) || (op != "+" && op != "-")) {
      throw DatabaseError("Operación no admitida con fechas: «" + op + "»", "42000");
    }
    const std::string days = op == "-" ? "-(" + right.text + ")" : right.text;
    return {"tpv_dateadd('day', " + days + ", " + ReadAs(left, type) + ")", type};
  }
  if (type == SqlType::Text) {
    throw DatabaseError("Operación no admitida con textos: «" + op + "»", "42000");
  }
  const std::string a = ReadAs(left, type);
  const std::string b = ReadAs(right, type);
  const bool safe_divisor = right.literal && right.text[0] != '?' && right.text != "0";
  std::string text = "(" + a + " " + op + " " + b + ")";
  if ((op == "/" || op == "%") && !safe_divisor) {
    text = "(" + a + " " + op + " tpv_divisor(" + b + "))";
  }
  if (type == SqlType::Money) return {"tpv_money(" + text + ")", type};
  return {text, type == SqlType::Bit ? SqlType::Int : type, left.literal && right.literal};
}

Printed Printer::PrintComparison(const std::string& op, const Printed& left, const Printed& right) {
  const SqlType type = Common(left.type, right.type);
  const std::string collate = type == SqlType::Text ? " COLLATE TPV" : "";
  return {"(" + ReadAs(left, type) + " " + op + " " + ReadAs(right, type) + collate + ")",
          SqlType::Bit};
}

std::string Printer::Joined(const Node& node, std::size_t from, const Printed& other) {
  std::string text;
  for (std::size_t i = from; i < node.kids.size(); ++i) {
    const Printed item = Print(*node.kids[i]);
    text += (text.empty() ? "" : ", ") + ReadAs(item, Common(other.type, item.type));
  }
  return text;
}

Printed Printer::PrintIn(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  const std::string collate = value.type == SqlType::Text ? " COLLATE TPV" : "";
  std::string list;
  if (node.select) {
    std::vector<ResultColumn> columns;
    list = PrintSelect(*node.select, columns);
  } else {
    list = Joined(node, 1, value);
  }
  return {"(" + value.text + collate + (node.negated ? " NOT IN (" : " IN (") + list + "))",
          SqlType::Bit};
}

Printed Printer::PrintBetween(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  const Printed low = PrintComparison(">=", value, Print(*node.kids[1]));
  const Printed high = PrintComparison("<=", value, Print(*node.kids[2]));
  return {(node.negated ? "(NOT (" : "((") + low.text + " AND " + high.text + "))", SqlType::Bit};
}

Printed Printer::PrintLike(const Node& node) {
  const std::string call =
      "tpv_like(" + Print(*node.kids[0]).text + ", " + Print(*node.kids[1]).text + ")";
  return {node.negated ? "(NOT " + call + ")" : call, SqlType::Bit};
}

Printed Printer::PrintCase(const Node& node) {
  const bool simple = node.kids.front() != nullptr;
  const Printed operand = simple ? Print(*node.kids.front()) : Printed();
  std::string text = "CASE";
  SqlType type = SqlType::Null;
  for (std::size_t i = 1; i + 1 < node.kids.size(); i += 2) {
    const Printed when = Print(*node.kids[i]);
    const Printed then = Print(*node.kids[i + 1]);
    const std::string condition =
        simple ? PrintComparison("=", operand, when).text : when.text;
    text += " WHEN " + condition + " THEN " + then.text;
    type = Common(type, then.type);
  }
  if (node.kids.back()) {
    const Printed otherwise = Print(*node.kids.back());
    text += " ELSE " + otherwise.text;
    type = Common(type, otherwise.type);
  }
  return {"(" + text + " END)", type};
}

Printed Printer::PrintCast(const Node& node) {
  const Printed value = Print(*node.kids[0]);
  const std::string& type = node.text;
  const auto is = [&](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), type) != names.end();
  };
  if (is({"money", "smallmoney"})) return {"tpv_money(" + value.text + ")", SqlType::Money};
  if (is({"float", "real"})) return {"tpv_float(" + value.text + ")", SqlType::Float};
  if (is({"decimal", "numeric"})) {
    return {"tpv_round(tpv_float(" + value.text + "), " + std::to_string(node.scale) + ")",
            SqlType::Float};
  }
  if (is({"int", "smallint", "bigint", "tinyint"})) {
    return {"tpv_int(" + value.text + ", 2147483647, 'CAST')", SqlType::Int};
  }
  if (is({"bit"})) return {"tpv_bit(" + value.text + ", 'CAST')", SqlType::Bit};
  if (is({"datetime", "smalldatetime", "date"})) {
    const std::string date = ReadAs(value, SqlType::DateTime);
    return {type == "date" ? "tpv_day(" + date + ")" : date, SqlType::DateTime};
  }
  if (is({"varchar", "nvarchar", "char", "nchar"})) {
    const std::string style = node.kids.size() > 1 ? Print(*node.kids[1]).text : "0";
    const int length = node.size == 0 ? 30 : node.size;  // what the dialect gives without one
    const char kind = "nbifmtd"[static_cast<int>(value.type)];
    return {"tpv_string(" + value.text + ", '" + kind + "', " + style + ", " +
                std::to_string(length) + ")",
            SqlType::Text};
  }
  throw DatabaseError("Tipo no admitido: «" + type + "»", "42000");
}

// One row at most, as SQL Server demands; SQLite would take the first of many.
Printed Printer::PrintSubquery(const Select& select) {
  std::vector<ResultColumn> columns;
  const bool guarded = !GivesOneRow(select);
  value_alias_ = guarded ? " AS v" : "";
  const std::string text = PrintSelect(select, columns);
  if (columns.size() != 1) {
    throw DatabaseError("La subconsulta debe tener una sola columna", "42000", 116);
  }
  if (!guarded) return {"(" + text + ")", columns[0].type};
  return {"(SELECT CASE WHEN count(*) > 1 THEN tpv_one_row() ELSE max(v) END FROM (" + text +
              " LIMIT 2))",
          columns[0].type};
}

}  // namespace tpv::dialect
