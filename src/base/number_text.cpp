#include "base/number_text.h"

#include <charconv>
#include <cmath>

#include "base/text.h"

namespace tpv {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// "." stands for grouping when every group behind a point has three digits and
// the first has one to three.
bool IsGrouped(std::string_view whole) {
  std::size_t group = 0;
  bool first = true;
  for (const char c : whole) {
    if (c != '.') {
      ++group;
      continue;
    }
    if (first ? (group == 0 || group > 3) : group != 3) return false;
    first = false;
    group = 0;
  }
  return !first && group == 3;
}

// Digits and at most one "." as the C locale writes them, "" when it is no number.
std::string Canonical(std::string_view text) {
  const std::size_t comma = text.find(',');
  const std::string_view whole = text.substr(0, comma);
  std::string result;
  if (whole.find('.') != std::string_view::npos) {
    const bool grouped = IsGrouped(whole);
    if (!grouped && comma != std::string_view::npos) return {};
    if (grouped) {
      for (const char c : whole) {
        if (c != '.') result += c;
      }
    } else {
      result = whole;
    }
  } else {
    result = whole;
  }
  if (comma != std::string_view::npos) {
    result += '.';
    result += text.substr(comma + 1);
  }
  return result;
}

bool IsPlainNumber(std::string_view text) {
  std::size_t digits = 0;
  std::size_t points = 0;
  for (const char c : text) {
    if (IsDigit(c)) {
      ++digits;
    } else if (c == '.') {
      ++points;
    } else {
      return false;
    }
  }
  return digits > 0 && points <= 1;
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
  char text[400];
  auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15);
  std::string result(text, end.ptr);
  if (result.find('e') != std::string::npos && std::fabs(value) < 1e15) {
    end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 15);
    result.assign(text, end.ptr);
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  return result == "-0" ? "0" : result;
}

std::string ToSpanish(double value) { return ReplaceAll(ToPlain(value), ".", ","); }

}  // namespace tpv
