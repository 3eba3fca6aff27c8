// A recursive-descent parser of the shop's dialect.
#pragma once

#include <string_view>

#include <string_view>

#include "adapters/sqlite/dialect/ast.h"
#include "adapters/sqlite/dialect/lexer.h"

namespace tpv::dialect {

class Parser {
 public:
  explicit Parser(std::string_view shape) : tokens_(Tokens(shape)) {}
  Statement ParseStatement();

 private:
  // statements
  Statement ParseInsert();
  Statement ParseUpdate();
  Statement ParseDelete();
  std::unique_ptr<Select> ParseSelect();
  std::unique_ptr<Select> ParseSelectCore();
  void ParseFrom(Select& select);
  FromItem ParseFromItem(std::string join);
  std::string ParseJoin();
  void ParseOrderBy(Select& select);
  SelectItem ParseSelectItem();
  int ParseTop();
  std::string ParseTableName();
  std::vector<NodePtr> ParseList();

  // expressions, loosest binding first
  NodePtr ParseExpression() { return ParseOr(); }
  NodePtr ParseOr();
  NodePtr ParseAnd();
  NodePtr ParseNot();
  NodePtr ParsePredicate();
  NodePtr ParseIn(NodePtr value);
  NodePtr ParseBetween(NodePtr value);
  NodePtr ParseSum();
  NodePtr ParseProduct();
  NodePtr ParseUnary();
  NodePtr ParsePrimary();
  NodePtr ParseParenthesis();
  NodePtr ParseLiteral();
  NodePtr ParseCase();
  NodePtr ParseCast();
  NodePtr ParseConvert();
  void ParseType(Node& cast);
  NodePtr ParseName();
  NodePtr ParseCall(std::string name);

  const Token& Peek(std::size_t ahead = 0) const;
  Token Take();
  bool IsWord(std::string_view word, std::size_t ahead = 0) const;
  bool IsOperator(std::string_view text, std::size_t ahead = 0) const;
  bool AcceptWord(std::string_view word);
  bool AcceptOperator(std::string_view text);
  void ExpectWord(std::string_view word);
  void ExpectOperator(std::string_view text);
  bool IsReserved() const;
  std::string ParseAlias();
  [[noreturn]] void Fail() const;

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
};

}  // namespace tpv::dialect
