#include "adapters/odbc/open_server.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::odbc {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
// Bytes of letters beyond ASCII too.
bool IsOfWord(char c) { return IsDigit(c) || IsLetter(c) || c == '_' || c == '@' || c == '#' || c == '$' || c < 0; }

char At(std::string_view sql, std::size_t at) { return at < sql.size() ? sql[at] : '\0'; }

template <typename Belongs>
std::size_t Over(std::string_view sql, std::size_t at, Belongs belongs) {
  while (at < sql.size() && belongs(sql[at])) ++at;
  return at;
}

std::size_t Behind(std::string_view sql, std::size_t at, std::string_view ending) {
  const std::size_t found = sql.find(ending, at);
  return found == std::string_view::npos ? sql.size() : found + ending.size();
}

std::size_t EndOfNumber(std::string_view sql, std::size_t at) {
  if (sql[at] == '0' && (At(sql, at + 1) == 'x' || At(sql, at + 1) == 'X')) return Over(sql, at + 2, IsOfWord);
  at = Over(sql, at, [](char c) { return IsDigit(c) || c == '.'; });
  if (At(sql, at) != 'e' && At(sql, at) != 'E') return at;
  const bool sign = At(sql, at + 1) == '+' || At(sql, at + 1) == '-';
  const std::size_t power = at + (sign ? 2 : 1);
  return IsDigit(At(sql, power)) ? Over(sql, power, IsDigit) : at;
}

// The end of the piece that begins there; of a text with a doubled quote the first half.
std::size_t EndOfPiece(std::string_view sql, std::size_t at) {
  const char c = sql[at];
  if (c == '\'' || c == '"') return Behind(sql, at + 1, std::string_view(&c, 1));
  if (c == '[') return Behind(sql, at + 1, "]");
  if (sql.substr(at).starts_with("--")) return Behind(sql, at, "\n");
  if (sql.substr(at).starts_with("/*")) return Behind(sql, at + 2, "*/");
  if (IsDigit(c)) return EndOfNumber(sql, at);
  return IsOfWord(c) ? Over(sql, at, IsOfWord) : at + 1;
}

}  // namespace

std::string AskVersion() { return "SELECT @@VERSION AS version"; }

bool IsOpenServer(std::string_view version) { return version.find("Babelfish") != std::string_view::npos; }

std::string WithBlanksBehindNumbers(std::string_view sql) {
  std::string text;
  for (std::size_t at = 0; at < sql.size();) {
    const std::size_t end = EndOfPiece(sql, at);
    text.append(sql.substr(at, end - at));
    if (IsDigit(sql[at]) && IsOfWord(At(sql, end))) text += ' ';
    at = end;
  }
  return text;
}

// Six bits a letter, the first lowest.
std::string EngineState(int native) {
  constexpr int kSmallest = 1 << 18;  // the server's own messages stay below
  std::string state;
  for (int i = 0; i < 5 && native >= kSmallest; ++i) state += static_cast<char>('0' + ((native >> (6 * i)) & 0x3F));
  const bool readable = std::all_of(state.begin(), state.end(), [](char c) { return IsDigit(c) || IsLetter(c); });
  return readable ? state : std::string();
}

}  // namespace tpv::odbc
