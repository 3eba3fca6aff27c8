#include "adapters/sqlite/dialect/parser.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

constexpr std::array kReserved = {
    "select", "from",  "where", "group",  "order",  "having", "union", "except", "intersect",
    "inner",  "left",  "right", "full",   "cross",  "join",   "on",    "as",     "and",
    "or",     "not",   "in",    "is",     "like",   "between", "case", "when",   "then",
    "else",   "end",   "set",   "values", "insert", "update", "delete", "into",  "by",
    "exists", "null",  "distinct", "top", "asc",    "desc"};

}  // namespace

Statement Parse(const std::string& shape) { return Parser(shape).ParseStatement(); }

Statement Parser::ParseStatement() {
  Statement statement;
  if (IsWord("insert")) {
    statement = ParseInsert();
  } else if (IsWord("update")) {
    statement = ParseUpdate();
  } else if (IsWord("delete")) {
    statement = ParseDelete();
  } else {
    statement.select = ParseSelect();
  }
  if (Peek().kind != TokenKind::End) Fail();
  return statement;
}

Statement Parser::ParseInsert() {
  Statement statement;
  statement.kind = Statement::Kind::Insert;
  ExpectWord("insert");
  AcceptWord("into");
  statement.table = ParseTableName();
  if (AcceptOperator("(")) {
    do statement.columns.push_back(Take().text);
    while (AcceptOperator(","));
    ExpectOperator(")");
  }
  if (IsWord("select")) {
    statement.select = ParseSelect();
    return statement;
  }
  ExpectWord("values");
  do {
    ExpectOperator("(");
    statement.values.push_back(ParseList());
    ExpectOperator(")");
  } while (AcceptOperator(","));
  return statement;
}

Statement Parser::ParseUpdate() {
  Statement statement;
  statement.kind = Statement::Kind::Update;
  ExpectWord("update");
  statement.table = ParseTableName();
  ExpectWord("set");
  do {
    std::string column = Take().text;
    if (AcceptOperator(".")) column = Take().text;
    ExpectOperator("=");
    statement.sets.emplace_back(std::move(column), ParseExpression());
  } while (AcceptOperator(","));
  if (AcceptWord("where")) statement.where = ParseExpression();
  return statement;
}

Statement Parser::ParseDelete() {
  Statement statement;
  statement.kind = Statement::Kind::Delete;
  ExpectWord("delete");
  AcceptWord("from");
  statement.table = ParseTableName();
  if (AcceptWord("where")) statement.where = ParseExpression();
  return statement;
}

std::unique_ptr<Select> Parser::ParseSelect() {
  const Nesting nesting(*this);
  auto first = ParseSelectCore();
  Select* last = first.get();
  while (IsWord("union") || IsWord("except") || IsWord("intersect")) {
    CountLink();
    std::string word = Take().folded;
    std::transform(word.begin(), word.end(), word.begin(), [](char c) {
      return static_cast<char>(c - 'a' + 'A');
    });
    if (AcceptWord("all")) word += " ALL";
    last->set_operator = word;
    last->next = ParseSelectCore();
    last = last->next.get();
  }
  ParseOrderBy(*first);
  return first;
}

std::unique_ptr<Select> Parser::ParseSelectCore() {
  auto select = std::make_unique<Select>();
  ExpectWord("select");
  select->distinct = AcceptWord("distinct");
  if (!select->distinct) AcceptWord("all");
  if (IsWord("top")) select->top = ParseTop();
  do select->items.push_back(ParseSelectItem());
  while (AcceptOperator(","));
  if (AcceptWord("from")) ParseFrom(*select);
  if (AcceptWord("where")) select->where = ParseExpression();
  if (AcceptWord("group")) {
    ExpectWord("by");
    select->group_by = ParseList();
  }
  if (AcceptWord("having")) select->having = ParseExpression();
  return select;
}

int Parser::ParseTop() {
  ExpectWord("top");
  const bool parenthesis = AcceptOperator("(");
  if (Peek().kind != TokenKind::Number) Fail();
  const int top = std::atoi(Take().text.c_str());
  if (parenthesis) ExpectOperator(")");
  return top;
}

SelectItem Parser::ParseSelectItem() {
  SelectItem item;
  item.value = ParseExpression();
  item.alias = ParseAlias();
  return item;
}

std::string Parser::ParseAlias() {
  if (AcceptWord("as")) return Take().text;
  if (Peek().kind == TokenKind::Name && !IsReserved()) return Take().text;
  return {};
}

void Parser::ParseFrom(Select& select) {
  select.from.push_back(ParseFromItem(""));
  for (std::string join = ParseJoin(); !join.empty(); join = ParseJoin()) {
    select.from.push_back(ParseFromItem(join));
  }
}

std::string Parser::ParseJoin() {
  if (AcceptOperator(",")) return ",";
  if (AcceptWord("join")) return "INNER JOIN";
  if (AcceptWord("inner")) {
    ExpectWord("join");
    return "INNER JOIN";
  }
  if (AcceptWord("cross")) {
    ExpectWord("join");
    return "CROSS JOIN";
  }
  for (const auto& [word, join] : {std::pair("left", "LEFT JOIN"), {"right", "RIGHT JOIN"},
                                   {"full", "FULL JOIN"}}) {
    if (!AcceptWord(word)) continue;
    AcceptWord("outer");
    ExpectWord("join");
    return join;
  }
  return {};
}

FromItem Parser::ParseFromItem(std::string join) {
  FromItem item;
  item.join = std::move(join);
  if (AcceptOperator("(")) {
    item.derived = ParseSelect();
    ExpectOperator(")");
  } else {
    item.table = ParseTableName();
  }
  item.alias = ParseAlias();
  const bool wants_condition = item.join.ends_with("JOIN") && item.join != "CROSS JOIN";
  if (wants_condition) {
    ExpectWord("on");
    item.on = ParseExpression();
  }
  return item;
}

// "Cav", "dbo.Cav" and "zrcomun.dbo.tivas" are all known by their last name.
std::string Parser::ParseTableName() {
  std::string name = Take().text;
  while (AcceptOperator(".")) name = Take().text;
  return name;
}

void Parser::ParseOrderBy(Select& select) {
  if (!AcceptWord("order")) return;
  ExpectWord("by");
  do {
    OrderItem item;
    item.value = ParseExpression();
    item.descending = AcceptWord("desc");
    if (!item.descending) AcceptWord("asc");
    select.order_by.push_back(std::move(item));
  } while (AcceptOperator(","));
}

std::vector<NodePtr> Parser::ParseList() {
  std::vector<NodePtr> list;
  do list.push_back(ParseExpression());
  while (AcceptOperator(","));
  return list;
}

const Token& Parser::Peek(std::size_t ahead) const {
  return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

Token Parser::Take() {
  if (Peek().kind == TokenKind::End) Fail();
  return tokens_[at_++];
}

bool Parser::IsWord(std::string_view word, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Name && Peek(ahead).folded == word;
}

bool Parser::IsOperator(std::string_view text, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Operator && Peek(ahead).text == text;
}

bool Parser::AcceptWord(std::string_view word) {
  if (!IsWord(word)) return false;
  ++at_;
  return true;
}

bool Parser::AcceptOperator(std::string_view text) {
  if (!IsOperator(text)) return false;
  ++at_;
  return true;
}

void Parser::ExpectWord(std::string_view word) {
  if (!AcceptWord(word)) Fail();
}

void Parser::ExpectOperator(std::string_view text) {
  if (!AcceptOperator(text)) Fail();
}

bool Parser::IsReserved() const {
  return std::any_of(kReserved.begin(), kReserved.end(),
                     [this](const char* word) { return Peek().folded == word; });
}

void Parser::FailTooDeep() const {
  throw DatabaseError("La sentencia anida o encadena demasiadas expresiones", "42000", 191);
}

void Parser::Fail() const {
  const Token& token = Peek();
  const std::string what = token.kind == TokenKind::End       ? "el final"
                           : token.kind == TokenKind::Literal ? "un valor"
                                                              : "«" + token.text + "»";
  throw DatabaseError("Sintaxis incorrecta en la sentencia cerca de " + what, "42000");
}

}  // namespace tpv::dialect
