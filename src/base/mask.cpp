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

bool IsDigitPlace(char c) { return c == '0' || c == '#'; }
bool IsAmongDigits(char c) { return IsDigitPlace(c) || c == '.' || c == ','; }

// The digits start at the first "0" or "#" (or the point right before it) and
// end with the last character that only digits are made of.
NumberMask ReadNumberMask(std::string_view mask) {
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

// A number's digits as text, with a point before its decimals.
class FixedText {
 public:
  // Of a size that has no more decimals than these.
  FixedText(double size, int decimals) {
    constexpr double kPowers[] = {1, 10, 100, 1000, 10000};
    constexpr double kPlain = 1e9;  // below it the digits are a whole number's
    if (decimals <= 4 && size < kPlain) {
      Write(static_cast<std::uint64_t>(std::llround(size * kPowers[decimals])), decimals);
    } else {
      end_ = std::to_chars(text_, text_ + sizeof text_, size, std::chars_format::fixed, decimals).ptr;
      point_ = decimals > 0 ? end_ - decimals - 1 : end_;
    }
  }

  std::string_view Whole() const { return {text_, point_}; }
  std::string_view Decimals() const { return {point_ < end_ ? point_ + 1 : end_, end_}; }

 private:
  void Write(std::uint64_t digits, int decimals) {
    if (decimals == 0) {
      point_ = end_ = std::to_chars(text_, text_ + sizeof text_, digits).ptr;
      return;
    }
    std::uint64_t power = 1;
    for (int i = 0; i < decimals; ++i) power *= 10;
    point_ = std::to_chars(text_, text_ + sizeof text_, digits / power).ptr;
    *point_ = '.';
    end_ = point_ + 1 + decimals;
    std::uint64_t behind = digits % power;
    for (char* at = end_; at != point_ + 1; behind /= 10) *--at = static_cast<char>('0' + behind % 10);
  }

  char text_[400];  // 309 digits and the decimals of the longest double
  char* point_;
  char* end_;
};

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
  const NumberMask parts = ReadNumberMask(mask);
  const double rounded = RoundHalfAway(value, parts.decimals);
  const FixedText digits(std::fabs(rounded), parts.decimals);
  std::string text = rounded < 0 ? "-" : "";
  text.append(parts.prefix);
  AppendWhole(text, digits.Whole(), parts);
  AppendDecimals(text, digits.Decimals(), parts);
  return text.append(parts.suffix);
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
