#include "adapters/sqlite/dialect/scanner.h"

#include <charconv>

#include "base/text.h"
#include "platform/database.h"

namespace tpv::dialect {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool StartsName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '@' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Every character of every statement is looked at: a table answers at once.
struct NameCharacters {
  constexpr NameCharacters() {
    for (int i = 0; i < 256; ++i) {
      const char c = static_cast<char>(i);
      start[i] = StartsName(c);
      part[i] = start[i] || (c >= '0' && c <= '9') || c == '$';
    }
  }
  bool start[256] = {};
  bool part[256] = {};
};
constexpr NameCharacters kNames;

bool IsNameStart(char c) { return kNames.start[static_cast<unsigned char>(c)]; }
bool IsNamePart(char c) { return kNames.part[static_cast<unsigned char>(c)]; }

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {
    result_.shape.reserve(sql.size());
    result_.literals.reserve(8);
  }

  Scanned Run() {
    while (at_ < sql_.size()) Next();
    CopyTo(sql_.size());
    return std::move(result_);
  }

 private:
  void Next() {
    const char c = sql_[at_];
    if (IsNameStart(c)) return Name();
    if (IsDigit(c) || (c == '.' && at_ + 1 < sql_.size() && IsDigit(sql_[at_ + 1]) && !after_name_)) {
      return Number();
    }
    if (c == '\'') return Text(at_);
    if (c == '[' || c == '"') return Delimited(c == '[' ? ']' : '"');
    if (c == '-' && Follows('-')) return SkipTo("\n", false);
    if (c == '/' && Follows('*')) return SkipTo("*/", true);
    if (c == ';' && OnlyBlanksAfter()) return Replace(at_, sql_.size(), "");
    Other(c);
  }

  void Other(char c) {
    if (c < ' ' && c >= 0) return Replace(at_, at_ + 1, " ");
    ++at_;
    if (c == ' ') return;
    if (c == ')') type_arguments_ = false;
    if (c == '(' && after_type_) type_arguments_ = true;
    if (c != ',' && c != '.') after_type_ = false;
    keep_number_ = c == '/' || (c == '(' && after_top_);
    after_top_ = false;
    after_name_ = c == ')';
  }

  void Name() {
    const std::size_t start = at_;
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
    const std::string_view name = sql_.substr(start, at_ - start);
    if (name.size() == 1 && (name[0] == 'N' || name[0] == 'n') && at_ < sql_.size() &&
        sql_[at_] == '\'') {
      return Text(start);
    }
    after_name_ = true;
    keep_number_ = false;
    Keyword(name);
  }

  void Keyword(std::string_view name) {
    after_top_ = false;
    after_type_ = false;
    switch (name.size()) {
      case 3:
        after_top_ = keep_number_ = EqualNoCase(name, "TOP");
        break;
      case 4:
        after_type_ = EqualNoCase(name, "char");
        break;
      case 5:
        if (EqualNoCase(name, "ORDER")) ordering_ = true;
        if (EqualNoCase(name, "UNION")) ordering_ = false;
        after_type_ = EqualNoCase(name, "nchar");
        break;
      case 7:
      case 8:
        after_type_ = EqualNoCase(name, "varchar") || EqualNoCase(name, "nvarchar") ||
                      EqualNoCase(name, "decimal") || EqualNoCase(name, "numeric");
        break;
      default:
        break;
    }
  }

  void Number() {
    const std::size_t start = at_;
    bool decimal = false;
    while (at_ < sql_.size() && IsDigit(sql_[at_])) ++at_;
    if (at_ < sql_.size() && sql_[at_] == '.') {
      decimal = true;
      do ++at_;
      while (at_ < sql_.size() && IsDigit(sql_[at_]));
    }
    decimal |= Exponent();
    const std::string_view text = sql_.substr(start, at_ - start);
    after_name_ = false;
    const bool kept = keep_number_ || ordering_ || type_arguments_;
    keep_number_ = keep_number_ && !kept;
    if (!kept) Lift(text, start, decimal);
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

  // `start` is where the text begins, with its N when it has one.
  void Text(std::size_t start) {
    std::string value;
    for (++at_;; ++at_) {
      if (at_ >= sql_.size()) throw DatabaseError("Texto sin cerrar en la sentencia", "42000");
      if (sql_[at_] != '\'') {
        value += sql_[at_];
      } else if (Follows('\'')) {
        value += '\'';
        ++at_;
      } else {
        break;
      }
    }
    Replace(start, at_ + 1, {&kTextMark, 1});
    result_.literals.emplace_back(std::move(value));
    after_name_ = false;
    keep_number_ = false;
  }

  void Delimited(char end) {
    const std::size_t close = sql_.find(end, at_ + 1);
    if (close == std::string_view::npos) {
      throw DatabaseError("Nombre sin cerrar en la sentencia", "42000");
    }
    at_ = close + 1;
    after_name_ = true;
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

  std::string_view sql_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;  // the statement up to here is in the shape
  Scanned result_;
  bool after_name_ = false;      // a "." now would qualify a name
  bool after_top_ = false;
  bool after_type_ = false;
  bool keep_number_ = false;
  bool type_arguments_ = false;
  bool ordering_ = false;
};

}  // namespace

Scanned Scan(std::string_view sql) { return Scanner(sql).Run(); }

}  // namespace tpv::dialect
