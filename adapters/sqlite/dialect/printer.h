// Prints parsed statements as SQLite text while it resolves names and types.
#pragma once

#include <string>
#include <vector>

#include "adapters/sqlite/dialect/ast.h"
#include "adapters/sqlite/dialect/translator.h"
#include "data/schema.h"

namespace tpv::dialect {

// An expression's SQLite text and type.
struct Printed {
  std::string text;
  SqlType type = SqlType::Null;
  bool literal = false;    // a constant of the statement
  bool condition = false;  // true, false or unknown: no value to store or show
  std::string sum = {};    // of money added up: the text without its rounding
  const schema::Column* column = nullptr;  // whose value it is, unchanged; null for none
};

SqlType TypeOf(const schema::Column& column);
char TypeLetter(SqlType type);  // how SQL functions are told of a type
// What a value becomes when it is stored in a column.
std::string Stored(const Printed& value, const schema::Column& column);
// The value as it is compared with one of the type: texts are read, numbers stay.
std::string ReadAs(const Printed& value, SqlType type);
// The value turned into the type, as SQLite's own type of value too.
std::string ConvertedTo(const Printed& value, SqlType type);
// The type that two values meet in.
SqlType Common(SqlType left, SqlType right);

// The name in marks, for SQLite.
std::string Delimited(std::string_view name);
// The name that a select's column has for a select around it.
std::string NameOf(const ResultColumn& column);
// A select's own name for an item: the alias, or the column's name.
std::string ItemName(const SelectItem& item);
std::string JoinText(const std::vector<std::string>& pieces, std::string_view separator);
// A printed text without the numbers of its literals.
std::string WithoutNumbers(std::string_view text);

// The tables that names can refer to, innermost last.
struct Source {
  std::string alias;
  std::vector<ResultColumn> columns;
  const schema::Table* table = nullptr;  // null for a select
  std::string joined_on;                 // printed; "" when joined without a condition
};

// What one select sees of its own: its tables, and what it groups by.
struct Scope {
  std::vector<Source> sources;
  bool grouped = false;
  int aggregates = 0;              // how deep inside aggregate functions
  std::vector<std::string> terms;  // printed, when grouped
  std::string last_in_order = {};  // printed: goes on where ORDER BY ends; "" for nothing
};

class Printer {
 public:
  std::string PrintSelect(const Select& select, std::vector<ResultColumn>& columns);
  Printed Print(const Node& node);  // a value
  std::string PrintCondition(const Node& node);

  // Opens the scope of one table, for updates and deletes.
  void Enter(const schema::Table& table);

 private:
  std::string PrintCore(const Select& select, std::vector<ResultColumn>& columns);
  std::string PrintCompound(const Select& select, std::vector<ResultColumn>& columns);
  std::string PrintFrom(const Select& select);
  std::string PrintSource(const FromItem& item);
  std::string PrintItems(const Select& select, std::vector<ResultColumn>& columns);
  std::string PrintStar(const std::string& qualifier, std::vector<ResultColumn>& columns);
  std::string PrintOrder(const Select& select, const std::vector<ResultColumn>& columns);
  std::string PrintGroup(const Select& select);
  std::vector<std::string> Ordered(const Select& select);
  int OrderPosition(const Node& node, const std::vector<ResultColumn>& columns);

  Printed PrintAny(const Node& node);
  Printed PrintUngrouped(const Node& node);
  Printed PrintUnary(const Node& node);
  Printed PrintColumn(const Node& node);
  std::string PrintSourceColumn(const Scope& scope, const Source& source, std::string_view name);
  Printed PrintBinary(const Node& node);
  Printed PrintArithmetic(const std::string& op, const Printed& left, const Printed& right);
  Printed PrintNumbers(const std::string& op, const Printed& left, const Printed& right,
                       SqlType type);
  Printed PrintComparison(const std::string& op, const Printed& left, const Printed& right);
  Printed PrintIn(const Node& node);
  Printed PrintBetween(const Node& node);
  Printed PrintLike(const Node& node);
  Printed PrintCase(const Node& node);
  Printed PrintCast(const Node& node);
  Printed PrintCall(const Node& node);
  Printed PrintAggregate(const Node& node);
  Printed PrintFunction(const Node& node, const std::vector<Printed>& arguments);
  Printed PrintRound(const std::vector<Printed>& arguments);
  Printed PrintFirstNotNull(const std::vector<Printed>& arguments, SqlType type);
  Printed PrintDatePart(const Node& node);
  Printed PrintLineWithTax(const char* column, const Printed& line);
  Printed PrintSubquery(const Select& select);

  std::vector<Scope> scopes_;
};

}  // namespace tpv::dialect
