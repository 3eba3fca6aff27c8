#include "adapters/sqlite/dialect/lexer.h"

#include "adapters/sqlite/dialect/scanner.h"
#include "base/text.h"

namespace tpv::dialect {

namespace {

bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '@' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Two-character operators may be written with a blank between ("< =").
std::string Operator(std::string_view shape, std::size_t& at) {
  std::string text(1, shape[at++]);
  if (text != "<" && text != ">" && text != "!") return text;
  std::size_t next = at;
  while (next < shape.size() && shape[next] == ' ') ++next;
  const bool pairs = next < shape.size() &&
                     (shape[next] == '=' || (text == "<" && shape[next] == '>'));
  if (pairs) {
    text += shape[next];
    at = next + 1;
  }
  return text == "!=" ? "<>" : text;
}

}  // namespace

std::vector<Token> Tokens(std::string_view shape) {
  std::vector<Token> tokens;
  int literals = 0;
  for (std::size_t at = 0; at < shape.size();) {
    const char c = shape[at];
    if (c == ' ') {
      ++at;
      continue;
    }
    Token& token = tokens.emplace_back();
    if (c == kWholeMark || c == kDecimalMark || c == kTextMark) {
      token.kind = TokenKind::Literal;
      token.text = std::string(1, c);
      token.literal = ++literals;
      ++at;
    } else if (IsNameStart(c)) {
      token.kind = TokenKind::Name;
      const std::size_t start = at;
      while (at < shape.size() && (IsNameStart(shape[at]) || IsDigit(shape[at]) || shape[at] == '$'))
        ++at;
      token.text = shape.substr(start, at - start);
      token.folded = FoldCase(token.text);
    } else if (c == '[' || c == '"') {
      token.kind = TokenKind::Name;
      const std::size_t close = shape.find(c == '[' ? ']' : '"', at + 1);
      token.text = shape.substr(at + 1, close - at - 1);
      at = close + 1;
    } else if (IsDigit(c)) {
      token.kind = TokenKind::Number;
      const std::size_t start = at;
      while (at < shape.size() && (IsDigit(shape[at]) || shape[at] == '.')) ++at;
      token.text = shape.substr(start, at - start);
    } else {
      token.kind = TokenKind::Operator;
      token.text = Operator(shape, at);
    }
  }
  tokens.emplace_back();
  return tokens;
}

}  // namespace tpv::dialect
