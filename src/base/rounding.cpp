#include "base/rounding.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tpv {

namespace {

// The shortest decimal text of a double, as digits and a decimal exponent:
// value = 0.d1d2d3… × 10^exponent.
struct Digits {
  char digit[20];
  int count = 0;
  int exponent = 0;
};

Digits ShortestDigits(double value) {
  char text[40] = {};
  const auto end =
      std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific);
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

}  // namespace

double RoundHalfAway(double value, int decimals) {
  const double size = std::fabs(value);
  if (!std::isfinite(value) || size >= 1e15 || size == 0) return value;
  const Digits digits = ShortestDigits(size);
  const int keep = digits.exponent + decimals;  // significant digits that stay
  if (keep >= digits.count) return value;
  if (keep < 0) return 0;
  return std::copysign(Rounded(digits, keep, decimals), value);
}

bool SameCents(double left, double right) {
  return RoundHalfAway(left, 2) == RoundHalfAway(right, 2);
}

}  // namespace tpv
