#include <cstdlib>

#include "adapters/sqlite/dialect/parser.h"
#include "adapters/sqlite/dialect/scanner.h"

namespace tpv::dialect {

namespace {

NodePtr Make(NodeKind kind, std::string text = {}) {
  auto node = std::make_unique<Node>();
  node->kind = kind;
  node->text = std::move(text);
  return node;
}

NodePtr Binary(std::string text, NodePtr left, NodePtr right) {
  NodePtr node = Make(NodeKind::Binary, std::move(text));
  node->kids.push_back(std::move(left));
  node->kids.push_back(std::move(right));
  return node;
}

}  // namespace

NodePtr Parser::Chain(std::string text, NodePtr left, NodePtr right) {
  CountLink();
  return Binary(std::move(text), std::move(left), std::move(right));
}

NodePtr Parser::ParseExpression() {
  const Nesting nesting(*this);
  return ParseOr();
}

NodePtr Parser::ParseOr() {
  NodePtr left = ParseAnd();
  while (AcceptWord("or")) left = Chain("OR", std::move(left), ParseAnd());
  return left;
}

NodePtr Parser::ParseAnd() {
  NodePtr left = ParseNot();
  while (AcceptWord("and")) left = Chain("AND", std::move(left), ParseNot());
  return left;
}

NodePtr Parser::ParseNot() {
  if (!AcceptWord("not")) return ParsePredicate();
  const Nesting nesting(*this);
  NodePtr node = Make(NodeKind::Unary, "NOT");
  node->kids.push_back(ParseNot());
  return node;
}

NodePtr Parser::ParsePredicate() {
  NodePtr value = ParseSum();
  for (const char* comparison : {"=", "<>", "<=", ">=", "<", ">"}) {
    if (AcceptOperator(comparison)) return Binary(comparison, std::move(value), ParseSum());
  }
  if (AcceptWord("is")) {
    NodePtr node = Make(NodeKind::IsNull);
    node->negated = AcceptWord("not");
    ExpectWord("null");
    node->kids.push_back(std::move(value));
    return node;
  }
  const bool negated = IsWord("not") && (IsWord("in", 1) || IsWord("between", 1) || IsWord("like", 1));
  if (negated) Take();
  NodePtr node;
  if (AcceptWord("in")) {
    node = ParseIn(std::move(value));
  } else if (AcceptWord("between")) {
    node = ParseBetween(std::move(value));
  } else if (AcceptWord("like")) {
    node = Make(NodeKind::Like);
    node->kids.push_back(std::move(value));
    node->kids.push_back(ParseSum());
  } else {
    return value;
  }
  node->negated = negated;
  return node;
}

NodePtr Parser::ParseIn(NodePtr value) {
  NodePtr node = Make(NodeKind::In);
  node->kids.push_back(std::move(value));
  ExpectOperator("(");
  if (IsWord("select")) {
    node->select = ParseSelect();
  } else {
    for (NodePtr& item : ParseList()) node->kids.push_back(std::move(item));
  }
  ExpectOperator(")");
  return node;
}

NodePtr Parser::ParseBetween(NodePtr value) {
  NodePtr node = Make(NodeKind::Between);
  node->kids.push_back(std::move(value));
  node->kids.push_back(ParseSum());
  ExpectWord("and");
  node->kids.push_back(ParseSum());
  return node;
}

NodePtr Parser::ParseSum() {
  NodePtr left = ParseProduct();
  for (;;) {
    if (AcceptOperator("+")) {
      left = Chain("+", std::move(left), ParseProduct());
    } else if (AcceptOperator("-")) {
      left = Chain("-", std::move(left), ParseProduct());
    } else {
      return left;
    }
  }
}

NodePtr Parser::ParseProduct() {
  NodePtr left = ParseUnary();
  for (;;) {
    if (AcceptOperator("*")) {
      left = Chain("*", std::move(left), ParseUnary());
    } else if (AcceptOperator("/")) {
      left = Chain("/", std::move(left), ParseUnary());
    } else if (AcceptOperator("%")) {
      left = Chain("%", std::move(left), ParseUnary());
    } else {
      return left;
    }
  }
}

NodePtr Parser::ParseUnary() {
  if (!IsOperator("+") && !IsOperator("-")) return ParsePrimary();
  const Nesting nesting(*this);
  if (Take().text == "+") return ParseUnary();
  NodePtr node = Make(NodeKind::Unary, "-");
  node->kids.push_back(ParseUnary());
  return node;
}

NodePtr Parser::ParsePrimary() {
  const Token& token = Peek();
  if (token.kind == TokenKind::Literal || token.kind == TokenKind::Number) return ParseLiteral();
  if (IsOperator("(")) return ParseParenthesis();
  if (AcceptOperator("*")) return Make(NodeKind::Star);
  if (token.kind != TokenKind::Name) Fail();
  if (AcceptWord("null")) return Make(NodeKind::Literal, "NULL");
  if (IsWord("case")) return ParseCase();
  if (IsWord("cast")) return ParseCast();
  if (IsWord("convert")) return ParseConvert();
  if (IsWord("exists")) {
    Take();
    ExpectOperator("(");
    NodePtr node = Make(NodeKind::Exists);
    node->select = ParseSelect();
    ExpectOperator(")");
    return node;
  }
  return ParseName();
}

NodePtr Parser::ParseParenthesis() {
  ExpectOperator("(");
  NodePtr node;
  if (IsWord("select")) {
    node = Make(NodeKind::Subquery);
    node->select = ParseSelect();
  } else {
    node = Make(NodeKind::Paren);
    node->kids.push_back(ParseExpression());
  }
  ExpectOperator(")");
  return node;
}

NodePtr Parser::ParseLiteral() {
  const Token token = Take();
  NodePtr node = Make(NodeKind::Literal, token.text);
  if (token.kind == TokenKind::Number) {
    node->literal = token.text.find('.') == std::string::npos ? LiteralKind::Whole
                                                              : LiteralKind::Decimal;
    return node;
  }
  node->literal = token.text[0] == kTextMark      ? LiteralKind::Text
                  : token.text[0] == kDecimalMark ? LiteralKind::Decimal
                                                  : LiteralKind::Whole;
  node->text = "?" + std::to_string(token.literal);
  return node;
}

NodePtr Parser::ParseCase() {
  ExpectWord("case");
  NodePtr node = Make(NodeKind::Case);
  node->kids.push_back(IsWord("when") ? nullptr : ParseExpression());
  if (!IsWord("when")) Fail();
  while (AcceptWord("when")) {
    node->kids.push_back(ParseExpression());
    ExpectWord("then");
    node->kids.push_back(ParseExpression());
  }
  node->kids.push_back(AcceptWord("else") ? ParseExpression() : nullptr);
  ExpectWord("end");
  return node;
}

NodePtr Parser::ParseCast() {
  ExpectWord("cast");
  ExpectOperator("(");
  NodePtr node = Make(NodeKind::Cast);
  node->kids.push_back(ParseExpression());
  ExpectWord("as");
  ParseType(*node);
  ExpectOperator(")");
  return node;
}

// The date style, when there is one, is the second kid.
NodePtr Parser::ParseConvert() {
  ExpectWord("convert");
  ExpectOperator("(");
  NodePtr node = Make(NodeKind::Cast);
  ParseType(*node);
  ExpectOperator(",");
  node->kids.push_back(ParseExpression());
  if (AcceptOperator(",")) node->kids.push_back(ParseExpression());
  ExpectOperator(")");
  return node;
}

void Parser::ParseType(Node& cast) {
  cast.text = Take().folded;
  if (!AcceptOperator("(")) return;
  cast.size = AcceptWord("max") ? -1 : std::atoi(Take().text.c_str());
  if (AcceptOperator(",")) cast.scale = std::atoi(Take().text.c_str());
  ExpectOperator(")");
}

// A column, a qualified column, "t.*", or a function with or without "dbo.".
NodePtr Parser::ParseName() {
  const bool function = IsOperator("(", 1) && (IsWord("left") || IsWord("right"));
  if (IsReserved() && !function) Fail();
  std::string name = Take().text;
  std::string qualifier;
  while (AcceptOperator(".")) {
    qualifier = name;
    if (AcceptOperator("*")) {
      NodePtr star = Make(NodeKind::Star);
      star->qualifier = qualifier;
      return star;
    }
    name = Take().text;
  }
  if (IsOperator("(")) return ParseCall(std::move(name));
  NodePtr column = Make(NodeKind::Column, std::move(name));
  column->qualifier = std::move(qualifier);
  return column;
}

NodePtr Parser::ParseCall(std::string name) {
  NodePtr node = Make(NodeKind::Call);
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  node->text = std::move(name);
  ExpectOperator("(");
  node->distinct = AcceptWord("distinct");
  if (!IsOperator(")")) node->kids = ParseList();
  ExpectOperator(")");
  return node;
}

}  // namespace tpv::dialect
