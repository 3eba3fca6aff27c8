// The tokens of a statement's shape.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv::dialect {

enum class TokenKind { Name, Number, Literal, Operator, End };

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text;    // as written; a delimited name without its marks
  std::string folded;  // lower case, empty for delimited names
  int literal = 0;     // 1-based index of a lifted literal
};

std::vector<Token> Tokens(std::string_view shape);

}  // namespace tpv::dialect
