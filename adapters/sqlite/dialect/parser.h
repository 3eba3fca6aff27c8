// A recursive-descent parser of the shop's dialect.
#pragma once

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
  NodePtr ParseExpression();
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

  // What is nested or chained without end would end the stack: these rules call each
  // other, and so do those who walk the tree.
  class Nesting {
   public:
    explicit Nesting(Parser& parser) : parser_(parser) {
      if (++parser_.nested_ > kMostNested) parser_.FailTooDeep();
    }
    ~Nesting() { --parser_.nested_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    Parser& parser_;
  };
  void CountLink() {
    if (++chained_ > kMostChained) FailTooDeep();
  }
  NodePtr Chain(std::string text, NodePtr left, NodePtr right);
  [[noreturn]] void FailTooDeep() const;

  static constexpr int kMostNested = 200;
  static constexpr int kMostChained = 1000;

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int nested_ = 0;   // now
  int chained_ = 0;  // operators in the whole statement
};

}  // namespace tpv::dialect
