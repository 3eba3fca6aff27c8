#include <algorithm>
#include <functional>
#include <map>

#include "adapters/sqlite/dialect/printer.h"
#include "adapters/sqlite/dialect/select_traits.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

// A function that becomes one of SQLite's (or ours) with the same arguments.
struct Plain {
  const char* name;
  std::size_t least;
  std::size_t most;
  SqlType result;
};

const std::map<std::string, Plain, std::less<>>& PlainFunctions() {
  using enum SqlType;
  static const std::map<std::string, Plain, std::less<>> functions = {
      {"len", {"tpv_len", 1, 1, Int}},
      {"substring", {"substr", 3, 3, Text}},
      {"upper", {"tpv_upper", 1, 1, Text}},
      {"lower", {"tpv_lower", 1, 1, Text}},
      {"ltrim", {"ltrim", 1, 1, Text}},
      {"rtrim", {"rtrim", 1, 1, Text}},
      {"replace", {"replace", 3, 3, Text}},
      {"getdate", {"tpv_getdate", 0, 0, DateTime}},
      {"getutcdate", {"tpv_getutcdate", 0, 0, DateTime}},
      {"scope_identity", {"last_insert_rowid", 0, 0, Int}},
  };
  return functions;
}

std::string Arguments(const std::vector<Printed>& arguments) {
  std::string text;
  for (const Printed& argument : arguments) text += (text.empty() ? "" : ", ") + argument.text;
  return text;
}

[[noreturn]] void WrongArguments(const std::string& function) {
  throw DatabaseError("Número de argumentos incorrecto en «" + function + "»", "42000", 174);
}

void RequireCount(const std::string& function, const std::vector<Printed>& arguments,
                  std::size_t least, std::size_t most) {
  if (arguments.size() < least || arguments.size() > most) WrongArguments(function);
}

}  // namespace

Printed Printer::PrintCall(const Node& node) {
  if (IsAggregate(node.text)) return PrintAggregate(node);
  if (node.text == "dateadd" || node.text == "datediff" || node.text == "datepart") {
    return PrintDatePart(node);
  }
  std::vector<Printed> arguments;
  for (const NodePtr& kid : node.kids) arguments.push_back(Print(*kid));
  return PrintFunction(node, arguments);
}

Printed Printer::PrintAggregate(const Node& node) {
  if (node.kids.size() != 1) WrongArguments(node.text);
  const bool counts = node.text.starts_with("count");
  if (node.kids[0]->kind == NodeKind::Star) {
    if (!counts) WrongArguments(node.text);
    return {"count(*)", SqlType::Int};
  }
  if (!scopes_.empty()) ++scopes_.back().aggregates;
  const Printed value = Print(*node.kids[0]);
  if (!scopes_.empty()) --scopes_.back().aggregates;
  const std::string text =
      (counts ? "count" : node.text) + "(" + (node.distinct ? "DISTINCT " : "") + value.text + ")";
  if (counts) return {text, SqlType::Int};
  if (node.text == "min" || node.text == "max") return {text, value.type};
  const bool summable = value.type == SqlType::Int || value.type == SqlType::Float ||
                        value.type == SqlType::Money || value.type == SqlType::Null;
  if (!summable) throw DatabaseError("«" + node.text + "» pide números", "42000", 8117);
  if (node.text == "avg" && value.type == SqlType::Int) {
    return {"CAST(" + text + " AS INTEGER)", SqlType::Int};
  }
  return {value.type == SqlType::Money ? "tpv_money(" + text + ")" : text, value.type};
}

Printed Printer::PrintFunction(const Node& node, const std::vector<Printed>& arguments) {
  const std::string& name = node.text;
  if (const auto plain = PlainFunctions().find(name); plain != PlainFunctions().end()) {
    const Plain& function = plain->second;
    RequireCount(name, arguments, function.least, function.most);
    return {std::string(function.name) + "(" + Arguments(arguments) + ")", function.result};
  }
  if (name == "fncprecioconiva" || name == "fncimporteconiva") {
    RequireCount(name, arguments, 1, 1);
    return PrintLineWithTax(name == "fncprecioconiva" ? "Lav_precio" : "Lav_Importe", arguments[0]);
  }
  if (name == "isnull") {
    RequireCount(name, arguments, 2, 2);
    const SqlType type = arguments[0].type == SqlType::Null ? arguments[1].type : arguments[0].type;
    return PrintFirstNotNull(arguments, type);
  }
  if (name == "coalesce") {
    if (arguments.size() < 2) WrongArguments(name);
    SqlType type = SqlType::Null;
    for (const Printed& argument : arguments) type = Common(type, argument.type);
    return PrintFirstNotNull(arguments, type);
  }
  if (name == "round") return PrintRound(arguments);
  if (name == "abs" || name == "floor" || name == "ceiling") {
    RequireCount(name, arguments, 1, 1);
    const std::string function = name == "abs" ? "abs" : "tpv_" + name;
    return {function + "(" + arguments[0].text + ")", arguments[0].type};
  }
  if (name == "left" || name == "right") {
    RequireCount(name, arguments, 2, 2);
    return {"tpv_" + name + "(" + Arguments(arguments) + ")", SqlType::Text};
  }
  if (name == "charindex") {
    RequireCount(name, arguments, 2, 2);
    return {"tpv_position(" + Arguments(arguments) + ")", SqlType::Int};
  }
  if (name == "year" || name == "month" || name == "day") {
    RequireCount(name, arguments, 1, 1);
    return {"tpv_datepart('" + name + "', " + ReadAs(arguments[0], SqlType::DateTime) + ")",
            SqlType::Int};
  }
  throw DatabaseError("No existe la función «" + name + "»", "42000", 195);
}

Printed Printer::PrintRound(const std::vector<Printed>& arguments) {
  RequireCount("round", arguments, 2, 2);
  const SqlType type = arguments[0].type;
  if (type == SqlType::Money) {
    return {"tpv_round(tpv_money(" + arguments[0].text + "), " + arguments[1].text + ")", type};
  }
  return {"tpv_round(" + ReadAs(arguments[0], SqlType::Float) + ", " + arguments[1].text + ")",
          type == SqlType::Int ? SqlType::Int : SqlType::Float};
}

Printed Printer::PrintFirstNotNull(const std::vector<Printed>& arguments, SqlType type) {
  std::string text;
  for (const Printed& argument : arguments) {
    text += (text.empty() ? "coalesce(" : ", ") + ConvertedTo(argument, type);
  }
  return {text + ")", type};
}

Printed Printer::PrintDatePart(const Node& node) {
  if (node.kids.size() < 2 || node.kids[0]->kind != NodeKind::Column) WrongArguments(node.text);
  const std::string part = "'" + ReplaceAll(FoldCase(node.kids[0]->text), "'", "''") + "'";
  const auto date = [&](std::size_t kid) {
    if (node.kids.size() <= kid) WrongArguments(node.text);
    return ReadAs(Print(*node.kids[kid]), SqlType::DateTime);
  };
  if (node.text == "datepart") return {"tpv_datepart(" + part + ", " + date(1) + ")", SqlType::Int};
  if (node.text == "datediff") {
    return {"tpv_datediff(" + part + ", " + date(1) + ", " + date(2) + ")", SqlType::Int};
  }
  return {"tpv_dateadd(" + part + ", " + Print(*node.kids[1]).text + ", " + date(2) + ")",
          SqlType::DateTime};
}

namespace {

bool IsOf(const Source& source, std::string_view table) {
  return source.table != nullptr && source.table->name == table;
}

std::string ColumnOf(const Source& source, std::string_view column) {
  return Delimited(source.alias) + "." + Delimited(column);
}

// The rate of that line's tax, when its row of the taxes is joined to it.
std::string JoinedRate(const Scope& scope, const Source& line) {
  for (const Source& source : scope.sources) {
    if (!IsOf(source, "tivas")) continue;
    const std::string key = ColumnOf(source, "Tiva_Id") + " = " + ColumnOf(line, "Lav_Tiva");
    if (source.joined_on == "(" + key + ")") return ColumnOf(source, "Tiva_iva");
  }
  return {};
}

std::string LookedUpRate(const Source& line) {
  return "(SELECT t_.Tiva_iva FROM main.tivas AS t_ WHERE t_.Tiva_Id = " +
         ColumnOf(line, "Lav_Tiva") + ")";
}

}  // namespace

// The store's functions of a line, in place of a call a row. What the statement is
// reading anyway, the line or its tax, is not looked up again.
Printed Printer::PrintLineWithTax(const char* column, const Printed& line) {
  for (const Scope& scope : scopes_) {
    for (const Source& source : scope.sources) {
      if (!IsOf(source, "Lav") || line.text != ColumnOf(source, "Lav_Id")) continue;
      const std::string joined = JoinedRate(scope, source);
      return {"tpv_with_tax(" + ColumnOf(source, column) + ", " +
                  (joined.empty() ? LookedUpRate(source) : joined) + ")",
              SqlType::Money};
    }
  }
  return {"(SELECT tpv_with_tax(l_." + std::string(column) +
              ", t_.Tiva_iva) FROM main.Lav AS l_ CROSS JOIN main.tivas AS t_ WHERE l_.Lav_Id = " +
              line.text + " AND t_.Tiva_Id = l_.Lav_Tiva)",
          SqlType::Money};
}

}  // namespace tpv::dialect
