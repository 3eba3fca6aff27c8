// A parsed statement of the shop's dialect, before names are resolved.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tpv::dialect {

struct Select;

enum class NodeKind {
  Literal,    // text: SQLite's text for it ("?3", "100", "NULL"); literal: its kind
  Column,     // text: name; qualifier: table or alias, may be empty
  Star,       // qualifier may be empty
  Call,       // text: function name in lower case
  Cast,       // text: type in lower case; size, scale
  Unary,      // text: operator
  Binary,     // text: operator
  Case,       // operand (or null) first, then when/then pairs, then else (or null)
  Subquery,   // scalar
  Exists,
  In,         // first kid the value, then the list, or `select`
  Between,    // value, low, high
  Like,
  IsNull,
  Paren
};

enum class LiteralKind { Null, Whole, Decimal, Text };

struct Node {
  NodeKind kind;
  std::string text;
  std::string qualifier;
  LiteralKind literal = LiteralKind::Null;
  bool negated = false;
  bool distinct = false;
  int size = 0;
  int scale = 0;
  std::vector<std::unique_ptr<Node>> kids;
  std::unique_ptr<Select> select;
};

using NodePtr = std::unique_ptr<Node>;

struct SelectItem {
  NodePtr value;
  std::string alias;
};

struct FromItem {
  std::string join;  // "" for the first, ",", "INNER JOIN", "LEFT JOIN", "CROSS JOIN"
  std::string table;
  std::string alias;
  std::unique_ptr<Select> derived;
  NodePtr on;
};

struct OrderItem {
  NodePtr value;
  bool descending = false;
};

struct Select {
  bool distinct = false;
  int top = -1;
  std::vector<SelectItem> items;
  std::vector<FromItem> from;
  NodePtr where;
  std::vector<NodePtr> group_by;
  NodePtr having;
  std::vector<OrderItem> order_by;
  std::string set_operator;  // "UNION", "UNION ALL", "EXCEPT", "INTERSECT" with `next`
  std::unique_ptr<Select> next;
};

struct Statement {
  enum class Kind { Select, Insert, Update, Delete } kind = Kind::Select;
  std::string table;
  std::unique_ptr<Select> select;
  std::vector<std::string> columns;
  std::vector<std::vector<NodePtr>> values;          // insert: a list a row
  std::vector<std::pair<std::string, NodePtr>> sets;  // update
  NodePtr where;
};

// Throws DatabaseError naming the token that it does not understand.
Statement Parse(const std::string& shape);

}  // namespace tpv::dialect
