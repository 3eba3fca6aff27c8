#include "adapters/sqlite/functions.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

#include "adapters/sqlite/date_functions.h"
#include "adapters/sqlite/sql_value.h"
#include "base/date_time.h"
#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "platform/clock.h"
#include "platform/database.h"

namespace tpv {

using sqlite::Fail;
using sqlite::IsNull;
using sqlite::ResultText;
using sqlite::TextOf;

namespace {

// What a text reads as where a number is needed; reports and returns false when
// it is none. A text of blanks is zero.
bool ReadNumber(sqlite3_context* context, sqlite3_value* value, bool money, double& number) {
  if (sqlite3_value_type(value) != SQLITE_TEXT) {
    number = sqlite3_value_double(value);
    return true;
  }
  std::string text = Trim(TextOf(value));
  if (money) std::erase(text, ',');  // a comma only groups in the dialect's money
  if (text.empty()) {
    number = 0;
    return true;
  }
  const auto parsed = ParseNumber(text);
  const bool plain = text.find(',') == std::string::npos;
  if (!parsed || !plain) {
    Fail(context, "No se puede convertir «" + text + "» en un número");
    return false;
  }
  // A lone group such as "1.234" is a decimal here, not a grouping.
  number = text.find('.') == std::string::npos ? *parsed : std::strtod(text.c_str(), nullptr);
  return true;
}

void ResultNumber(sqlite3_context* context, double number) {
  if (number == std::trunc(number) && std::fabs(number) < 9e15) {
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(number));
  } else {
    sqlite3_result_double(context, number);
  }
}

void NumberFunction(sqlite3_context* context, int, sqlite3_value** values) {
  double number = 0;
  if (IsNull(values[0]) || !ReadNumber(context, values[0], false, number)) return;
  ResultNumber(context, number);
}

void FloatFunction(sqlite3_context* context, int, sqlite3_value** values) {
  double number = 0;
  if (IsNull(values[0]) || !ReadNumber(context, values[0], false, number)) return;
  sqlite3_result_double(context, number);
}

bool FitsMoney(double number) { return std::fabs(number) < 922337203685477.0; }

void MoneyFunction(sqlite3_context* context, int, sqlite3_value** values) {
  double number = 0;
  if (IsNull(values[0]) || !ReadNumber(context, values[0], true, number)) return;
  if (!FitsMoney(number)) return Fail(context, "Importe fuera de rango");
  sqlite3_result_double(context, RoundAsEngine(number, 4));
}

// tpv_int(value, largest, column)
void IntFunction(sqlite3_context* context, int, sqlite3_value** values) {
  double number = 0;
  if (IsNull(values[0]) || !ReadNumber(context, values[0], false, number)) return;
  const bool from_text = sqlite3_value_type(values[0]) == SQLITE_TEXT;
  const double whole = std::trunc(number);
  const double largest = sqlite3_value_double(values[1]);
  if ((from_text && whole != number) || !(whole <= largest) || whole < -largest - 1) {
    return Fail(context, TextOf(values[2]) + ": «" + TextOf(values[0]) + "» no es un entero que quepa");
  }
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(whole));
}

// tpv_bit(value, column)
void BitFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  if (sqlite3_value_type(values[0]) != SQLITE_TEXT) {
    return sqlite3_result_int(context, sqlite3_value_double(values[0]) != 0);
  }
  const std::string text = TextOf(values[0]);
  if (EqualNoCase(text, "true") || EqualNoCase(text, "false")) {
    return sqlite3_result_int(context, EqualNoCase(text, "true") ? 1 : 0);
  }
  double number = 0;
  if (ReadNumber(context, values[0], false, number)) sqlite3_result_int(context, number != 0);
}

// tpv_text(value, longest, column): a text that does not fit is refused, not cut.
void TextFunction(sqlite3_context* context, int, sqlite3_value** values) {
  const int longest = sqlite3_value_int(values[1]);
  if (longest == 0 || sqlite3_value_bytes(values[0]) <= longest) {
    return sqlite3_result_value(context, values[0]);
  }
  const std::string text = TextOf(values[0]);
  const auto most = static_cast<std::size_t>(longest);
  if (Length(TrimRight(text)) > most) {
    return Fail(context, TextOf(values[2]) + ": el texto tiene más de " + std::to_string(longest) +
                             " caracteres");
  }
  ResultText(context, Left(text, most));
}

// tpv_string(value, kind, style, length): CAST and CONVERT to text.
void StringFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  const char kind = TextOf(values[1])[0];
  std::string text = TextOf(values[0]);
  if (kind == 'd') text = sqlite::DateAsText(text, sqlite3_value_int(values[2]));
  if (kind == 'm') {
    text = ReplaceAll(FormatNumber(sqlite3_value_double(values[0]), "0.00"), ",", ".");
  }
  if (kind == 'f') {
    char digits[32];
    sqlite3_snprintf(sizeof digits, digits, "%.6g", sqlite3_value_double(values[0]));
    text = digits;
  }
  const int longest = sqlite3_value_int(values[3]);
  ResultText(context, longest > 0 ? Left(text, static_cast<std::size_t>(longest)) : text);
}

void RoundFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0]) || IsNull(values[1])) return;
  const double value = sqlite3_value_double(values[0]);
  const int decimals = sqlite3_value_int(values[1]);
  if (decimals >= 0) return sqlite3_result_double(context, RoundAsEngine(value, std::min(decimals, 15)));
  const double unit = std::pow(10.0, -decimals);
  sqlite3_result_double(context, RoundAsEngine(value / unit, 0) * unit);
}

// Of money below a thousand million: its four decimals are a whole number.
double MoneyInCents(double money) {
  const long long cents = (std::llround(std::fabs(money) * 10000) + 50) / 100;
  return static_cast<double>(money < 0 ? -cents : cents) / 100;
}

// tpv_with_tax(net amount, rate): money, rounded to cents.
void WithTaxFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0]) || IsNull(values[1])) return;
  const double net = sqlite3_value_double(values[0]);
  const double gross = net + net / 100 * sqlite3_value_double(values[1]);
  if (!FitsMoney(gross)) return Fail(context, "Importe fuera de rango");
  const double money = RoundAsEngine(gross, 4);
  sqlite3_result_double(context, std::fabs(money) < 1e9 ? MoneyInCents(money) : RoundAsEngine(money, 2));
}

void DivisorFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (!IsNull(values[0]) && sqlite3_value_double(values[0]) == 0) {
    return Fail(context, "División por cero");
  }
  sqlite3_result_value(context, values[0]);
}

void FloorFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (!IsNull(values[0])) ResultNumber(context, std::floor(sqlite3_value_double(values[0])));
}

void CeilingFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (!IsNull(values[0])) ResultNumber(context, std::ceil(sqlite3_value_double(values[0])));
}

void LengthFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(Length(TrimRight(TextOf(values[0])))));
}

void LowerFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (!IsNull(values[0])) ResultText(context, FoldCase(TextOf(values[0])));
}

void UpperFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  const std::string text = TextOf(values[0]);
  std::string upper;
  for (std::size_t at = 0; at < text.size();) {
    char32_t c = NextCharacter(text, at);
    const bool latin = c >= 0xE0 && c <= 0xFE && c != 0xF7;
    if ((c >= U'a' && c <= U'z') || latin) c -= 32;
    AppendCharacter(upper, c);
  }
  ResultText(context, upper);
}

void LeftFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  ResultText(context, Left(TextOf(values[0]), static_cast<std::size_t>(
                                                  std::max(0, sqlite3_value_int(values[1])))));
}

void RightFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  const std::string text = TextOf(values[0]);
  const std::size_t length = Length(text);
  const auto count = static_cast<std::size_t>(std::max(0, sqlite3_value_int(values[1])));
  ResultText(context, count >= length ? text : From(text, length - count + 1));
}

void PositionFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0]) || IsNull(values[1])) return;
  const std::string text = FoldCase(TextOf(values[1]));
  const std::size_t at = text.find(FoldCase(TextOf(values[0])));
  const auto position = at == std::string::npos ? 0 : Length(text.substr(0, at)) + 1;
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(position));
}

// "[abc]", "[a-z]", "[^0-9]" against one byte of folded text.
bool InSet(std::string_view set, char c) {
  const bool negated = set.starts_with('^');
  if (negated) set.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < set.size(); ++i) {
    if (i + 2 < set.size() && set[i + 1] == '-') {
      found |= c >= set[i] && c <= set[i + 2];
      i += 2;
    } else {
      found |= c == set[i];
    }
  }
  return found != negated;
}

bool Like(std::string_view text, std::string_view pattern) {
  for (; !pattern.empty(); pattern.remove_prefix(1)) {
    if (pattern[0] == '%') {
      for (std::size_t i = 0; i <= text.size(); ++i) {
        if (Like(text.substr(i), pattern.substr(1))) return true;
      }
      return false;
    }
    if (text.empty()) return false;
    if (pattern[0] == '[' && pattern.find(']') != std::string_view::npos) {
      const std::size_t close = pattern.find(']');
      if (!InSet(pattern.substr(1, close - 1), text[0])) return false;
      pattern.remove_prefix(close);
    } else if (pattern[0] == '_') {
      std::size_t length = 0;
      NextCharacter(text, length);
      text.remove_prefix(length - 1);
    } else if (pattern[0] != text[0]) {
      return false;
    }
    text.remove_prefix(1);
  }
  return text.find_first_not_of(' ') == std::string_view::npos;
}

void LikeFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0]) || IsNull(values[1])) return;
  sqlite3_result_int(context, Like(FoldCase(TextOf(values[0])), FoldCase(TextOf(values[1]))));
}

void OneRowFunction(sqlite3_context* context, int, sqlite3_value**) {
  Fail(context, "La subconsulta devuelve más de una fila");
}

void NowFunction(sqlite3_context* context, int, sqlite3_value**) {
  const auto* clock = static_cast<const Clock*>(sqlite3_user_data(context));
  ResultText(context, ToIso(clock->Now()));
}

void UtcFunction(sqlite3_context* context, int, sqlite3_value**) {
  const auto* clock = static_cast<const Clock*>(sqlite3_user_data(context));
  ResultText(context, ToIso(clock->Utc()));
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

int Sign(int difference) { return difference < 0 ? -1 : difference > 0 ? 1 : 0; }

// Regardless of case and of blanks at the end; accents count.
int Compare(void*, int left_size, const void* left_bytes, int right_size, const void* right_bytes) {
  std::string_view left(static_cast<const char*>(left_bytes), left_size);
  std::string_view right(static_cast<const char*>(right_bytes), right_size);
  left = left.substr(0, left.find_last_not_of(' ') + 1);
  right = right.substr(0, right.find_last_not_of(' ') + 1);
  if (left == right) return 0;
  if (!IsAscii(left) || !IsAscii(right)) return Sign(FoldCase(left).compare(FoldCase(right)));
  const int start = sqlite3_strnicmp(left.data(), right.data(),
                                     static_cast<int>(std::min(left.size(), right.size())));
  if (start != 0) return Sign(start);
  return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
}

using Function = void (*)(sqlite3_context*, int, sqlite3_value**);

struct Entry {
  const char* name;
  int arguments;
  Function function;
};

constexpr Entry kFunctions[] = {
    {"tpv_number", 1, NumberFunction},   {"tpv_float", 1, FloatFunction},
    {"tpv_money", 1, MoneyFunction},     {"tpv_int", 3, IntFunction},
    {"tpv_bit", 2, BitFunction},         {"tpv_text", 3, TextFunction},
    {"tpv_string", 4, StringFunction},   {"tpv_round", 2, RoundFunction},
    {"tpv_divisor", 1, DivisorFunction}, {"tpv_floor", 1, FloorFunction},
    {"tpv_ceiling", 1, CeilingFunction}, {"tpv_len", 1, LengthFunction},
    {"tpv_lower", 1, LowerFunction},     {"tpv_upper", 1, UpperFunction},
    {"tpv_left", 2, LeftFunction},       {"tpv_right", 2, RightFunction},
    {"tpv_position", 2, PositionFunction}, {"tpv_like", 2, LikeFunction},
    {"tpv_date", 1, sqlite::DateFunction}, {"tpv_day", 1, sqlite::DayFunction},
    {"tpv_date_styled", 2, sqlite::StyledDateFunction},
    {"tpv_datepart", 2, sqlite::DatePartFunction}, {"tpv_dateadd", 3, sqlite::DateAddFunction},
    {"tpv_datediff", 3, sqlite::DateDiffFunction}, {"tpv_with_tax", 2, WithTaxFunction},
};

}  // namespace

void RegisterFunctions(sqlite3* handle, const Clock& clock) {
  constexpr int kPure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  int result = sqlite3_create_collation(handle, "TPV", SQLITE_UTF8, nullptr, Compare);
  for (const Entry& entry : kFunctions) {
    result |= sqlite3_create_function(handle, entry.name, entry.arguments, kPure, nullptr,
                                      entry.function, nullptr, nullptr);
  }
  result |= sqlite3_create_function(handle, "tpv_one_row", 0, SQLITE_UTF8, nullptr, OneRowFunction,
                                    nullptr, nullptr);
  result |= sqlite3_create_function(handle, "tpv_getdate", 0, SQLITE_UTF8,
                                    const_cast<Clock*>(&clock), NowFunction, nullptr, nullptr);
  result |= sqlite3_create_function(handle, "tpv_getutcdate", 0, SQLITE_UTF8,
                                    const_cast<Clock*>(&clock), UtcFunction, nullptr, nullptr);
  if (result != SQLITE_OK) throw DatabaseError("No se pueden registrar las funciones del almacén");
}

}  // namespace tpv
