#include "base/rounding.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace tpv {

namespace {

// The 15 digits that a double surely holds, with a decimal exponent: value =
// 0.d1d2d3… × 10^exponent. What a product of prices is off by lies behind them.
struct Digits {
  char digit[20];
  int count = 0;
  int exponent = 0;
};

Digits DigitsOf(double value) {
  char text[40] = {};
  const auto end =
      std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, 14);
  Digits result;
  const char* at = text;
  for (; at != end.ptr && *at != 'e'; ++at) {
    if (*at != '.') result.digit[result.count++] = *at;
  }
  result.exponent = std::atoi(at + 1) + 1;
  return result;
}

// The digits before `keep` with the next one rounding them, as a double.
double Rounded(const Digits& digits, int keep, int decimals) {
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

// Far from a half the decimal text decides nothing that the double does not;
// below this size the product's error is far smaller than the margin.
std::optional<double> RoundedPlainly(double size, int decimals) {
  constexpr double kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
  constexpr double kLargest = 1e9;
  constexpr double kMargin = 1e-6;
  if (decimals < 0 || decimals > 6) return std::nullopt;
  const double scaled = size * kPowers[decimals];
  const double whole = std::floor(scaled);
  const double fraction = scaled - whole;
  if (scaled >= kLargest || std::fabs(fraction - 0.5) < kMargin) return std::nullopt;
  return (fraction > 0.5 ? whole + 1 : whole) / kPowers[decimals];
}

double RoundedByDigits(double size, int decimals) {
  const Digits digits = DigitsOf(size);
  const int keep = digits.exponent + decimals;  // significant digits that stay
  if (keep >= digits.count) return size;
  return keep < 0 ? 0 : Rounded(digits, keep, decimals);
}

}  // namespace

double RoundHalfAway(double value, int decimals) {
  const double size = std::fabs(value);
  if (!std::isfinite(value) || size >= 1e15 || size == 0) return value;
  const auto plain = RoundedPlainly(size, decimals);
  const double rounded = plain ? *plain : RoundedByDigits(size, decimals);
  return rounded == 0 ? 0 : std::copysign(rounded, value);
}

bool SameCents(double left, double right) {
  return RoundHalfAway(left, 2) == RoundHalfAway(right, 2);
}

}  // namespace tpv
