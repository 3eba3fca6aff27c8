#include "base/mask.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"

namespace tpv {

namespace {

// A number mask taken apart: what stands before and behind the digits, and how
// many digits each side of the separator must and may have.
struct NumberMask {
  std::string prefix;
  std::string suffix;
  bool grouped = false;
  int whole_zeros = 0;
  int decimal_zeros = 0;
  int decimals = 0;
};

NumberMask ReadNumberMask(std::string_view mask) {
  NumberMask result;
  const std::size_t first = mask.find_first_of("0#");
  const std::size_t last = mask.find_last_of("0#.,");
  if (first == std::string_view::npos) {
    result.prefix = mask;
    return result;
  }
  result.prefix = mask.substr(0, first);
  result.suffix = mask.substr(last + 1);
  bool behind_point = false;
  for (const char c : mask.substr(first, last + 1 - first)) {
    if (c == '.') behind_point = true;
    if (c == ',') result.grouped = true;
    if (c == '0') ++(behind_point ? result.decimal_zeros : result.whole_zeros);
    if (behind_point && (c == '0' || c == '#')) ++result.decimals;
  }
  return result;
}

std::string Grouped(const std::string& digits) {
  std::string result;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) result += '.';
    result += digits[i];
  }
  return result;
}

std::string FixedText(double size, int decimals) {
  char text[400];
  const auto end = std::to_chars(text, text + sizeof text, size, std::chars_format::fixed, decimals);
  return std::string(text, end.ptr);
}

std::string DatePart(const DateTime& value, char part, std::size_t length) {
  int number = 0;
  switch (part) {
    case 'd': number = value.day; break;
    case 'm': number = value.month; break;
    case 'y': number = length > 2 ? value.year : value.year % 100; break;
    case 'h': number = value.hour; break;
    case 'n': number = value.minute; break;
    default: number = value.second; break;
  }
  std::string text = std::to_string(number);
  return text.size() < length ? std::string(length - text.size(), '0') + text : text;
}

char LowerLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool IsDatePart(char c) { return std::string_view("dmyhns").find(c) != std::string_view::npos; }

}  // namespace

std::string FormatNumber(double value, std::string_view mask) {
  if (!std::isfinite(value)) return ToSpanish(value);
  const NumberMask parts = ReadNumberMask(mask);
  const double rounded = RoundHalfAway(value, parts.decimals);
  std::string whole = FixedText(std::fabs(rounded), parts.decimals);
  std::string decimals;
  if (const std::size_t point = whole.find('.'); point != std::string::npos) {
    decimals = whole.substr(point + 1);
    whole.resize(point);
  }
  while (static_cast<int>(decimals.size()) > parts.decimal_zeros && decimals.back() == '0') {
    decimals.pop_back();
  }
  if (whole == "0") whole.clear();
  while (static_cast<int>(whole.size()) < parts.whole_zeros) whole.insert(0, 1, '0');
  if (parts.grouped) whole = Grouped(whole);
  const std::string sign = rounded < 0 ? "-" : "";
  return sign + parts.prefix + whole + (decimals.empty() ? "" : "," + decimals) + parts.suffix;
}

std::string FormatDate(const DateTime& value, std::string_view mask) {
  std::string result;
  char previous = 0;
  for (std::size_t i = 0; i < mask.size();) {
    const char letter = LowerLetter(mask[i]);
    if (!IsDatePart(letter)) {
      result += mask[i++];
      continue;
    }
    std::size_t length = 0;
    while (i + length < mask.size() && LowerLetter(mask[i + length]) == letter) ++length;
    const bool minutes = letter == 'm' && previous == 'h';
    result += DatePart(value, minutes ? 'n' : letter, length);
    previous = letter;
    i += length;
  }
  return result;
}

std::string FormatText(std::string_view text, std::string_view mask) {
  const auto width = static_cast<std::size_t>(std::count(mask.begin(), mask.end(), '@'));
  return mask.ends_with('!') ? PadRight(text, width) : PadLeft(text, width);
}

std::string Format(const Variant& value, std::string_view mask) {
  if (value.IsNull() || mask.empty()) return value.ToText();
  if (mask.find('@') != std::string_view::npos) return FormatText(value.ToText(), mask);
  if (value.IsDate()) return FormatDate(value.ToDate(), mask);
  if (value.IsNumber() && mask.find_first_of("0#") != std::string_view::npos) {
    return FormatNumber(value.ToDouble(), mask);
  }
  return value.ToText();
}

std::string MaskWithDecimals(std::string_view head, int decimals) {
  return std::string(head) + std::string(static_cast<std::size_t>(std::clamp(decimals, 0, 15)), '0');
}

}  // namespace tpv
