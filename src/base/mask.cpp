#include "base/mask.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr int kMostDecimals = 15;
constexpr int kMostPlainZeros = 20;

// A number mask taken apart: what stands before and behind the digits, and how
// many digits each side of the separator must and may have.
struct NumberMask {
  std::string_view prefix;
  std::string_view suffix;
  bool grouped = false;
  int whole_zeros = 0;
  int decimal_zeros = 0;
  int decimals = 0;
};

constexpr bool IsDigitPlace(char c) { return c == '0' || c == '#'; }
constexpr bool IsAmongDigits(char c) { return IsDigitPlace(c) || c == '.' || c == ','; }

// The digits start at the first "0" or "#" (or the point right before it) and
// end with the last character that only digits are made of.
constexpr NumberMask ReadNumberMask(std::string_view mask) {
  NumberMask result;
  const auto* first = std::find_if(mask.begin(), mask.end(), IsDigitPlace);
  if (first == mask.end()) {
    result.prefix = mask;
    return result;
  }
  if (first != mask.begin() && first[-1] == '.') --first;
  const auto* last = std::find_if_not(first, mask.end(), IsAmongDigits);
  result.prefix = {mask.begin(), first};
  result.suffix = {last, mask.end()};
  bool behind_point = false;
  for (const char c : std::string_view(first, last)) {
    if (c == '.') behind_point = true;
    if (c == ',') result.grouped = true;
    if (c == '0') ++(behind_point ? result.decimal_zeros : result.whole_zeros);
    if (behind_point && (c == '0' || c == '#')) ++result.decimals;
  }
  result.decimals = std::min(result.decimals, kMostDecimals);
  result.decimal_zeros = std::min(result.decimal_zeros, result.decimals);
  return result;
}

// The mask of nearly every amount.
constexpr std::string_view kAmountMask = "#,##0.00";
constexpr NumberMask kAmount = ReadNumberMask(kAmountMask);

// Of as many units of the mask's last decimal. Written from behind.
std::string UnitsText(std::uint32_t units, bool negative, const NumberMask& mask) {
  char text[2 * kMostPlainZeros];
  char* const end = text + sizeof text;
  char* at = end;
  for (int i = mask.decimals; i > 0; --i, units /= 10) {
    const auto digit = static_cast<char>('0' + units % 10);
    if (at != end || digit != '0' || i <= mask.decimal_zeros) *--at = digit;
  }
  if (at != end) *--at = ',';
  for (int i = 0; units > 0 || i < mask.whole_zeros; ++i, units /= 10) {
    if (mask.grouped && i > 0 && i % 3 == 0) *--at = '.';
    *--at = static_cast<char>('0' + units % 10);
  }
  if (mask.prefix.empty() && mask.suffix.empty()) {
    if (negative) *--at = '-';
    return {at, end};
  }
  return std::string(negative ? "-" : "").append(mask.prefix).append(at, end).append(mask.suffix);
}

void AppendWhole(std::string& text, std::string_view digits, const NumberMask& mask) {
  if (digits == "0") digits = {};
  const std::size_t length = std::max(digits.size(), static_cast<std::size_t>(mask.whole_zeros));
  for (std::size_t i = 0; i < length; ++i) {
    const std::size_t behind = length - i;
    if (mask.grouped && i > 0 && behind % 3 == 0) text += '.';
    text += behind > digits.size() ? '0' : digits[digits.size() - behind];
  }
}

// "," and the decimals that the mask keeps.
void AppendDecimals(std::string& text, std::string_view digits, const NumberMask& mask) {
  const auto least = static_cast<std::size_t>(mask.decimal_zeros);
  while (digits.size() > least && digits.back() == '0') digits.remove_suffix(1);
  if (!digits.empty()) text.append(1, ',').append(digits);
}

// Of a rounded number of any size.
std::string LongNumberText(double rounded, const NumberMask& mask) {
  char text[400];  // 309 digits and the decimals of the longest double
  const char* end =
      std::to_chars(text, text + sizeof text, std::fabs(rounded), std::chars_format::fixed, mask.decimals).ptr;
  const std::string_view digits(text, end);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  std::string result = rounded < 0 ? "-" : "";
  result.append(mask.prefix);
  AppendWhole(result, digits.substr(0, point), mask);
  AppendDecimals(result, digits.substr(std::min(point + 1, digits.size())), mask);
  return result.append(mask.suffix);
}

std::string DatePart(const DateTime& value, char part, std::size_t length) {
  int number = 0;
  switch (part) {
    case 'd':
      number = value.day;
      break;
    case 'm':
      number = value.month;
      break;
    case 'y':
      number = length > 2 ? value.year : value.year % 100;
      break;
    case 'h':
      number = value.hour;
      break;
    case 'n':
      number = value.minute;
      break;
    default:
      number = value.second;
      break;
  }
  std::string text = std::to_string(number);
  return text.size() < length ? std::string(length - text.size(), '0') + text : text;
}

char LowerLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool IsDatePart(char c) { return std::string_view("dmyhns").find(c) != std::string_view::npos; }

}  // namespace

std::string FormatNumber(double value, std::string_view mask) {
  if (!std::isfinite(value)) return ToSpanish(value);
  const NumberMask parts = mask == kAmountMask ? kAmount : ReadNumberMask(mask);
  const auto units = RoundedUnits(std::fabs(value), parts.decimals);
  if (units && parts.whole_zeros <= kMostPlainZeros) {
    return UnitsText(static_cast<std::uint32_t>(*units), value < 0 && *units > 0, parts);
  }
  return LongNumberText(RoundHalfAway(value, parts.decimals), parts);
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
  return std::string(head) +
         std::string(static_cast<std::size_t>(std::clamp(decimals, 0, kMostDecimals)), '0');
}

}  // namespace tpv
