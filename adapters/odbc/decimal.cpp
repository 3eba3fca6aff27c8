#include "adapters/odbc/decimal.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "platform/database.h"

namespace tpv::odbc {

namespace {

constexpr std::size_t kMoneyDecimals = 4;
constexpr std::size_t kMoneyDigits = 18;

bool IsDigits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Whole part and decimals of a value that money can hold.
bool FitsMoney(std::string_view whole, std::string_view decimals) {
  return IsDigits(whole) && IsDigits(decimals) &&
         decimals.find_last_not_of('0') + 1 <= kMoneyDecimals &&
         whole.size() + kMoneyDecimals <= kMoneyDigits;
}

Money ToMoney(bool negative, std::string_view whole, std::string_view decimals) {
  std::string digits(whole);
  decimals = decimals.substr(0, kMoneyDecimals);
  digits.append(decimals).append(kMoneyDecimals - decimals.size(), '0');
  std::int64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return Money{negative ? -value : value};
}

}  // namespace

Variant ReadDecimal(std::string_view text) {
  const bool negative = text.starts_with('-');
  const std::string_view digits = text.substr(negative ? 1 : 0);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::string_view whole = digits.substr(0, point);
  const std::string_view decimals = digits.substr(std::min(point + 1, digits.size()));
  if (!digits.empty() && FitsMoney(whole, decimals)) {
    return Variant(ToMoney(negative, whole, decimals));
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw DatabaseError("El servidor envió «" + std::string(text) + "» como número", "22018");
  }
  return Variant(value);
}

}  // namespace tpv::odbc
