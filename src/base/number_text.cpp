#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/text.h"

namespace tpv {

namespace {

// "." stands for grouping when every group behind a point has three digits and
// the first has one to three and starts with no zero: "0.250" is a quarter.
bool IsGrouped(std::string_view whole) {
  const std::size_t first = whole.find('.');
  if (first == 0 || first > 3 || whole.front() == '0') return false;
  for (std::size_t i = first; i < whole.size(); ++i) {
    if ((whole[i] == '.') != ((i - first) % 4 == 0)) return false;
  }
  return (whole.size() - first) % 4 == 0;
}

// Without grouping and with "." for the comma, as the C locale writes numbers;
// "" when the points and the comma cannot go together.
std::string Canonical(std::string_view text) {
  const std::size_t comma = text.find(',');
  std::string result(text.substr(0, comma));
  if (result.find('.') != std::string::npos) {
    if (IsGrouped(result)) {
      std::erase(result, '.');
    } else if (comma != std::string_view::npos) {
      return {};
    }
  }
  if (comma == std::string_view::npos) return result;
  return result.append(1, '.').append(text.substr(comma + 1));
}

bool IsPlainNumber(std::string_view text) {
  const auto digits = std::count_if(text.begin(), text.end(), IsDigit);
  const auto points = std::count(text.begin(), text.end(), '.');
  return digits > 0 && points <= 1 && digits + points == std::ssize(text);
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  const std::string trimmed = Trim(text);
  std::string_view rest = trimmed;
  const bool negative = !rest.empty() && rest.front() == '-';
  if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) rest.remove_prefix(1);
  const std::string number = Canonical(rest);
  if (!IsPlainNumber(number)) return std::nullopt;
  double value = 0;
  const auto end = std::from_chars(number.data(), number.data() + number.size(), value);
  if (end.ec != std::errc() || value >= 1e15) return std::nullopt;
  return negative ? -value : value;
}

double NumberOrZero(std::string_view text) { return ParseNumber(text).value_or(0); }

std::optional<std::int32_t> ParseInt32(std::string_view text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number || *number != std::trunc(*number)) return std::nullopt;
  if (*number < -2147483648.0 || *number > 2147483647.0) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

std::int32_t Int32OrZero(std::string_view text) { return ParseInt32(text).value_or(0); }

std::int32_t LeadingNumber(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && IsDigit(text[length])) ++length;
  std::int32_t value = 0;
  std::from_chars(text.data(), text.data() + length, value);
  return value;
}

std::string ToPlain(double value) {
  if (std::trunc(value) == value && std::fabs(value) < 1e15) return std::to_string(static_cast<std::int64_t>(value));
  char text[32];
  auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15);
  std::string result(text, end.ptr);
  if (std::fabs(value) < 1e-4) {  // where the general form would turn to an exponent
    end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 15);
    result.assign(text, end.ptr);
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  // What 15 digits round up to the first number that has an exponent.
  if (result == "1e+15" || result == "-1e+15") result.replace(result.size() - 4, 4, "000000000000000");
  return result == "-0" ? "0" : result;
}

std::string ToSpanish(double value) {
  std::string text = ToPlain(value);
  std::replace(text.begin(), text.end(), '.', ',');
  return text;
}

}  // namespace tpv
