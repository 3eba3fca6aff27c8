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
  bool literal = false;  // a constant of the statement
};

SqlType TypeOf(const schema::Column& column);
// What a value becomes when it is stored in a column.
std::string Stored(const Printed& value, const schema::Column& column);
// The value read as the wider type that it meets in a comparison or sum.
std::string ReadAs(const Printed& value, SqlType type);

// The tables that names can refer to, innermost last.
struct Source {
  std::string alias;
  std::vector<ResultColumn> columns;
};
using Scope = std::vector<Source>;

class Printer {
 public:
  std::string PrintSelect(const Select& select, std::vector<ResultColumn>& columns);
  Printed Print(const Node& node);
  std::string PrintCondition(const Node& node) { return Print(node).text; }

  // Opens the scope of one table, for updates and deletes.
  void Enter(const schema::Table& table);

 private:
  std::string PrintCore(const Select& select, std::vector<ResultColumn>& columns);
  std::string PrintFrom(const Select& select);
  std::string PrintSource(const FromItem& item);
  std::string PrintItems(const Select& select, std::vector<ResultColumn>& columns);
  std::string PrintStar(const std::string& qualifier, std::vector<ResultColumn>& columns);
  std::string PrintOrder(const Select& select, const std::vector<ResultColumn>& columns);
  std::string PrintGroup(const Select& select);

  Printed PrintColumn(const Node& node);
  Printed PrintBinary(const Node& node);
  Printed PrintArithmetic(const std::string& op, const Printed& left, const Printed& right);
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
  Printed PrintFirstNotNull(const std::vector<Printed>& arguments);
  Printed PrintDatePart(const Node& node);
  Printed PrintLineWithTax(const char* column, const Printed& line);
  Printed PrintSubquery(const Select& select);
  std::string Joined(const Node& node, std::size_t from, const Printed& other);

  std::vector<Scope> scopes_;
  std::string value_alias_;  // what the next select calls its one column
};

}  // namespace tpv::dialect
