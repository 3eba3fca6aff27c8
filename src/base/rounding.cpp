#include "base/rounding.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace tpv {

namespace {

// Of a double, as digits and a decimal exponent: value = 0.d1d2d3… × 10^exponent.
struct DecimalDigits {
  char digit[20];
  int count = 0;
  int exponent = 0;
};

// How many of a double's digits count: those that it surely holds, behind which
// lies what a product of prices is off by, or as many as tell it from its
// neighbours.
enum class Precision { Sure, Shortest };

DecimalDigits DigitsOf(double value, Precision precision) {
  char text[40] = {};
  constexpr auto kForm = std::chars_format::scientific;
  constexpr int kSureDecimals = 14;
  char* const last = text + sizeof text - 1;
  const auto end = precision == Precision::Sure
                       ? std::to_chars(text, last, value, kForm, kSureDecimals)
                       : std::to_chars(text, last, value, kForm);
  DecimalDigits result;
  const char* at = text;
  for (; at != end.ptr && *at != 'e'; ++at) {
    if (*at != '.') result.digit[result.count++] = *at;
  }
  result.exponent = std::atoi(at + 1) + 1;
  return result;
}

// The digits before `keep` with the next one rounding them, as a double.
double Rounded(const DecimalDigits& digits, int keep, int decimals) {
  char text[48];
  int length = 0;
  text[length++] = '0';
  for (int i = 0; i < keep; ++i) text[length++] = i < digits.count ? digits.digit[i] : '0';
  if (keep < digits.count && digits.digit[keep] >= '5') {
    int at = length - 1;
    while (text[at] == '9') text[at--] = '0';
    ++text[at];
  }
  text[length++] = 'e';
  const auto end = std::to_chars(text + length, text + sizeof text, -decimals);
  double result = 0;
  std::from_chars(text, end.ptr, result);
  return result;
}

// Up to six decimals.
constexpr double kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000};

double RoundedByDigits(double size, int decimals, Precision precision) {
  const DecimalDigits digits = DigitsOf(size, precision);
  const int keep = digits.exponent + decimals;  // significant digits that stay
  if (keep >= digits.count) return size;
  return keep < 0 ? 0 : Rounded(digits, keep, decimals);
}

double Round(double value, int decimals, Precision precision) {
  const double size = std::fabs(value);
  if (!std::isfinite(value) || size >= 1e15 || size == 0) return value;
  const auto units = RoundedUnits(size, decimals);
  const double rounded =
      units ? static_cast<double>(*units) / kPowers[decimals] : RoundedByDigits(size, decimals, precision);
  return rounded == 0 ? 0 : std::copysign(rounded, value);
}

}  // namespace

// Far from a half the decimal text decides nothing that the double does not;
// below this size the product's error is far smaller than the margin.
std::optional<std::int64_t> RoundedUnits(double size, int decimals) {
  constexpr double kLargest = 1e9;
  constexpr double kMargin = 1e-6;
  if (decimals < 0 || decimals >= static_cast<int>(std::size(kPowers))) return std::nullopt;
  const double scaled = size * kPowers[decimals];
  if (!(scaled >= 0 && scaled < kLargest)) return std::nullopt;
  const auto whole = static_cast<std::int64_t>(scaled);
  const double fraction = scaled - static_cast<double>(whole);
  if (std::fabs(fraction - 0.5) < kMargin) return std::nullopt;
  return fraction > 0.5 ? whole + 1 : whole;
}

double RoundHalfAway(double value, int decimals) { return Round(value, decimals, Precision::Sure); }

double RoundAsEngine(double value, int decimals) {
  return Round(value, decimals, Precision::Shortest);
}

bool SameCents(double left, double right) {
  return RoundHalfAway(left, 2) == RoundHalfAway(right, 2);
}

}  // namespace tpv
