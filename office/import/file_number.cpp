#include "office/import/file_number.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace tpv::office {

namespace {

constexpr double kLargest = 1e9;

// Without sign, blanks and units.
struct Bare {
  std::string digits;  // digits, commas and points
  bool negative = false;
};

std::optional<Bare> Strip(std::string_view text) {
  Bare bare;
  bool inside = false;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCharacter(text, at);
    if (c == ' ' || c == 0xA0 || c == 0x202F || c == U'€' || c == '%') continue;
    if (!inside && bare.digits.empty() && (c == '-' || c == '+')) {
      bare.negative = c == '-';
      inside = true;
    } else if ((c < 0x80 && IsDigit(static_cast<char>(c))) || c == ',' || c == '.') {
      bare.digits += static_cast<char>(c);
    } else {
      return std::nullopt;
    }
  }
  return bare;
}

// "1.234.567" by `mark`: one to three digits that do not begin with zero, then threes.
bool IsGrouped(std::string_view whole, char mark) {
  const std::size_t first = whole.find(mark);
  if (first == 0 || first > 3 || whole.front() == '0') return false;
  for (std::size_t i = first; i < whole.size(); ++i) {
    if ((whole[i] == mark) != ((i - first) % 4 == 0)) return false;
  }
  return (whole.size() - first) % 4 == 0;
}

// What a number's own form says of its mark: that it stands before decimals, that it
// groups, or nothing.
enum class Says {
  Whole,
  CommaDecimals,
  PointDecimals,
  CommaGroups,
  PointGroups,
  CommaEither,
  PointEither,
  Wrong
};

Says FormOf(std::string_view digits) {
  const auto commas = std::count(digits.begin(), digits.end(), ',');
  const auto points = std::count(digits.begin(), digits.end(), '.');
  if (static_cast<std::size_t>(commas + points) == digits.size()) return Says::Wrong;
  if (commas + points == 0) return Says::Whole;
  if (commas > 0 && points > 0) {
    const bool comma_last = digits.rfind(',') > digits.rfind('.');
    const char last = comma_last ? ',' : '.';
    const char group = comma_last ? '.' : ',';
    const std::string_view whole = digits.substr(0, digits.rfind(last));
    if (!IsGrouped(whole, group)) return Says::Wrong;
    return comma_last ? Says::CommaDecimals : Says::PointDecimals;
  }
  const char mark = commas > 0 ? ',' : '.';
  const bool grouped = IsGrouped(digits, mark);
  if (commas + points > 1) {
    if (!grouped) return Says::Wrong;
    return commas > 0 ? Says::CommaGroups : Says::PointGroups;
  }
  if (grouped) return commas > 0 ? Says::CommaEither : Says::PointEither;
  return commas > 0 ? Says::CommaDecimals : Says::PointDecimals;
}

std::string Plain(std::string_view digits, char decimals) {
  std::string plain;
  for (const char c : digits) {
    if (IsDigit(c)) plain += c;
    if (c == decimals) plain += '.';
  }
  return plain;
}

}  // namespace

void DecimalMark::Learn(std::string_view text) {
  const auto bare = Strip(text);
  if (!bare) return;
  const Says form = FormOf(bare->digits);
  comma_ |= form == Says::CommaDecimals || form == Says::PointGroups;
  point_ |= form == Says::PointDecimals || form == Says::CommaGroups;
}

std::optional<double> DecimalMark::Read(std::string_view text, std::string& reason) const {
  const auto bare = Strip(text);
  const Says form = bare ? FormOf(bare->digits) : Says::Wrong;
  if (form == Says::Wrong) {
    reason = "«" + Left(text, 20) + "» no es un número";
    return std::nullopt;
  }
  if ((form == Says::CommaEither || form == Says::PointEither) && comma_ == point_) {
    reason = "«" + Left(text, 20) +
             "» puede ser mil o uno con decimales: escríbalo con cuatro decimales, o sin "
             "punto ni coma";
    return std::nullopt;
  }
  const bool comma = form == Says::CommaDecimals || form == Says::PointGroups ||
                     ((form == Says::CommaEither || form == Says::PointEither) && comma_);
  const std::string plain = Plain(bare->digits, comma ? ',' : '.');
  double value = 0;
  const auto end = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (end.ec != std::errc() || value >= kLargest) {
    reason = "«" + Left(text, 20) + "» es un número demasiado grande";
    return std::nullopt;
  }
  return bare->negative ? -value : value;
}

}  // namespace tpv::office
