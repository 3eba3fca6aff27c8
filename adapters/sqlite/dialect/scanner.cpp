#include "adapters/sqlite/dialect/scanner.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

constexpr bool StartsName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '@' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

constexpr bool IsNamePart(char c) { return StartsName(c) || IsDigit(c) || c == '$'; }

constexpr bool IsBlank(char c) { return c >= 0 && c <= ' '; }

// Every character of every statement passes by: all that can neither begin nor be
// a literal, a comment, a name in marks or a control character is plain.
struct PlainCharacters {
  constexpr PlainCharacters() {
    for (int i = 0; i < 256; ++i) {
      const char c = static_cast<char>(i);
      const bool control = i < ' ';
      plain[i] = !control && !IsDigit(c) && std::string_view("'[\"-/;").find(c) == std::string_view::npos;
    }
  }
  bool plain[256] = {};
};
constexpr PlainCharacters kCharacters;

bool IsPlain(char c) { return kCharacters.plain[static_cast<unsigned char>(c)]; }

// The statement before a place without the blanks at its end.
std::string_view Before(std::string_view sql, std::size_t at) {
  while (at > 0 && IsBlank(sql[at - 1])) --at;
  return sql.substr(0, at);
}

// The word that it ends with, which may stand right behind a number.
std::string_view LastWord(std::string_view sql) {
  std::size_t start = sql.size();
  while (start > 0 && IsNamePart(sql[start - 1])) --start;
  while (start < sql.size() && !StartsName(sql[start])) ++start;
  return sql.substr(start);
}

bool EndsWithTop(std::string_view sql) { return EqualNoCase(LastWord(sql), "TOP"); }

bool EndsWithType(std::string_view sql) {
  constexpr std::string_view kSized[] = {"char", "nchar", "varchar", "nvarchar", "decimal", "numeric"};
  const std::string_view word = LastWord(sql);
  return std::any_of(std::begin(kSized), std::end(kSized),
                     [word](std::string_view type) { return EqualNoCase(word, type); });
}

// How far a word ORDER that does not end at this character is from ending at the
// earliest: most statements are passed over five characters at a time.
std::size_t StepTo(char c) {
  switch (c | 0x20) {
    case 'e': return 1;
    case 'd': return 2;
    case 'r': return 3;
    case 'o': return 4;
    default: return 5;
  }
}

// Where the first word ORDER is, or the statement's end.
std::size_t OrderIn(std::string_view sql) {
  constexpr std::string_view kOrder = "ORDER";
  for (std::size_t last = kOrder.size() - 1; last < sql.size(); last += StepTo(sql[last])) {
    const std::size_t at = last + 1 - kOrder.size();
    if ((sql[last] | 0x20) != 'r' || !EqualNoCase(sql.substr(at, kOrder.size()), kOrder)) continue;
    const bool begins = at == 0 || !StartsName(sql[at - 1]);
    if (begins && (last + 1 == sql.size() || !IsNamePart(sql[last + 1]))) return at;
  }
  return sql.size();
}

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {
    result_.shape.reserve(sql.size());
    result_.literals.reserve(8);
  }

  Scanned Run() {
    for (SkipPlain(); at_ < sql_.size(); SkipPlain()) Next();
    CopyTo(sql_.size());
    return std::move(result_);
  }

 private:
  void SkipPlain() {
    const char* const end = sql_.data() + sql_.size();
    const char* next = sql_.data() + at_;
    while (next != end && IsPlain(*next)) ++next;
    at_ = static_cast<std::size_t>(next - sql_.data());
  }

  void Next() {
    const char c = sql_[at_];
    if (IsDigit(c)) return InName() ? SkipName() : Number();
    if (c == '\'') return Text();
    if (c == '[' || c == '"') return Delimited(c == '[' ? ']' : '"');
    if (c == '-' && Follows('-')) return SkipTo("\n", false);
    if (c == '/' && Follows('*')) return SkipTo("*/", true);
    if (c == ';' && OnlyBlanksAfter()) return Replace(at_, sql_.size(), "");
    if (IsBlank(c)) return Replace(at_, at_ + 1, " ");
    ++at_;
  }

  // Whether the digit here belongs to a name that begins before it.
  bool InName() const {
    std::size_t start = at_;
    while (start > literal_end_ && IsNamePart(sql_[start - 1])) --start;
    return start < at_ && StartsName(sql_[start]);
  }

  void SkipName() {
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
  }

  // Where the number begins whose first digit is here: at the point before it,
  // unless that qualifies a name.
  std::size_t NumberStart() const {
    if (at_ == literal_end_ || at_ == 0 || sql_[at_ - 1] != '.') return at_;
    const std::string_view before = Before(sql_, at_ - 1);
    if (before.empty() || before.size() == literal_end_) return at_ - 1;
    const char c = before.back();
    return IsNamePart(c) || c == ')' || c == ']' || c == '"' ? at_ : at_ - 1;
  }

  void Number() {
    const std::size_t start = NumberStart();
    bool decimal = start < at_;
    while (at_ < sql_.size() && IsDigit(sql_[at_])) ++at_;
    if (!decimal && at_ < sql_.size() && sql_[at_] == '.') {
      decimal = true;
      do ++at_;
      while (at_ < sql_.size() && IsDigit(sql_[at_]));
    }
    decimal |= Exponent();
    if (!Stays(start)) Lift(sql_.substr(start, at_ - start), start, decimal);
    literal_end_ = at_;
  }

  bool Exponent() {
    if (at_ >= sql_.size() || (sql_[at_] != 'e' && sql_[at_] != 'E')) return false;
    std::size_t end = at_ + 1;
    if (end < sql_.size() && (sql_[end] == '+' || sql_[end] == '-')) ++end;
    if (end >= sql_.size() || !IsDigit(sql_[end])) return false;
    while (end < sql_.size() && IsDigit(sql_[end])) ++end;
    at_ = end;
    return true;
  }

  // Whether what stands before a number makes it part of the statement's shape.
  bool Stays(std::size_t number) {
    if (order_ == kUnknown) order_ = OrderIn(sql_);
    if (number > order_) return true;
    const std::string_view before = Before(sql_, number);
    if (before.empty()) return false;
    switch (before.back()) {
      case '/':
        return true;
      case '(': {
        const std::string_view word = Before(before, before.size() - 1);
        return EndsWithTop(word) || EndsWithType(word);
      }
      case ',':
        return IsSecondSize(before);
      default:
        return EndsWithTop(before);
    }
  }

  // Behind "decimal(10,".
  static bool IsSecondSize(std::string_view before) {
    std::string_view sizes = Before(before, before.size() - 1);
    while (!sizes.empty() && IsDigit(sizes.back())) sizes.remove_suffix(1);
    sizes = Before(sizes, sizes.size());
    return sizes.ends_with('(') && EndsWithType(Before(sizes, sizes.size() - 1));
  }

  void Lift(std::string_view text, std::size_t start, bool decimal) {
    std::int64_t whole = 0;
    const char* end = text.data() + text.size();
    if (!decimal && std::from_chars(text.data(), end, whole).ec == std::errc()) {
      Replace(start, at_, {&kWholeMark, 1});
      result_.literals.emplace_back(whole);
      return;
    }
    double value = 0;
    if (std::from_chars(text.data(), end, value).ec != std::errc()) {
      throw DatabaseError("Número fuera de rango en la sentencia: " + std::string(text), "22003");
    }
    Replace(start, at_, {&kDecimalMark, 1});
    result_.literals.emplace_back(value);
  }

  // From the quote here, with the N before it when that is a word of its own.
  void Text() {
    const std::string_view word = LastWord(sql_.substr(literal_end_, at_ - literal_end_));
    const std::size_t start = EqualNoCase(word, "N") ? at_ - 1 : at_;
    std::string value;
    for (++at_;; value += '\'', ++at_) {
      const std::size_t quote = sql_.find('\'', at_);
      if (quote == std::string_view::npos) {
        throw DatabaseError("Texto sin cerrar en la sentencia", "42000");
      }
      value += sql_.substr(at_, quote - at_);
      at_ = quote;
      if (!Follows('\'')) break;
      ++at_;
    }
    Replace(start, at_ + 1, {&kTextMark, 1});
    result_.literals.emplace_back(std::move(value));
    literal_end_ = at_;
  }

  void Delimited(char end) {
    const std::size_t close = sql_.find(end, at_ + 1);
    if (close == std::string_view::npos) {
      throw DatabaseError("Nombre sin cerrar en la sentencia", "42000");
    }
    at_ = close + 1;
  }

  void SkipTo(std::string_view end, bool required) {
    const std::size_t close = sql_.find(end, at_ + 2);
    if (close == std::string_view::npos && required) {
      throw DatabaseError("Comentario sin cerrar en la sentencia", "42000");
    }
    Replace(at_, close == std::string_view::npos ? sql_.size() : close + end.size(), " ");
  }

  // What stands in the statement up to here goes into the shape as it is.
  void CopyTo(std::size_t end) {
    result_.shape += sql_.substr(copied_, end - copied_);
    copied_ = end;
  }

  void Replace(std::size_t start, std::size_t end, std::string_view with) {
    CopyTo(start);
    result_.shape += with;
    at_ = copied_ = end;
  }

  bool Follows(char c) const { return at_ + 1 < sql_.size() && sql_[at_ + 1] == c; }

  bool OnlyBlanksAfter() const {
    return sql_.find_first_not_of(" \t\r\n;", at_) == std::string_view::npos;
  }

  static constexpr std::size_t kUnknown = std::string_view::npos;

  std::string_view sql_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;       // the statement up to here is in the shape
  std::size_t literal_end_ = 0;  // behind the last literal
  std::size_t order_ = kUnknown;  // where ORDER stands
  Scanned result_;
};

}  // namespace

Scanned Scan(std::string_view sql) { return Scanner(sql).Run(); }

}  // namespace tpv::dialect
