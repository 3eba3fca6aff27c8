#include "sale/weighed_code.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kCodeLength = 13;
constexpr std::size_t kPrefix = 2;
constexpr std::size_t kInside = 10;  // digits between prefix and check digit

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsDigit);
}

// The digit that thirteen digits end with: threes and ones from the left.
bool CheckDigitHolds(std::string_view code) {
  int sum = 0;
  for (std::size_t i = 0; i < code.size(); ++i) sum += (code[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return sum % 10 == 0;
}

bool IsLayout(std::string_view layout) {
  if (layout.size() != kPrefix + 1 + kInside || layout[0] != '2' || layout[kPrefix] != '=') return false;
  const std::string_view inside = layout.substr(kPrefix + 1);
  const bool prices = inside.find('P') != std::string_view::npos;
  const bool weighs = inside.find('W') != std::string_view::npos;
  return AllDigits(layout.substr(0, kPrefix)) && inside.find('I') != std::string_view::npos &&
         prices != weighs;
}

std::string DigitsAt(std::string_view inside, std::string_view layout, char role) {
  std::string digits;
  for (std::size_t i = 0; i < kInside; ++i) {
    if (layout[i] == role) digits += inside[i];
  }
  return digits;
}

WeighedCode Read(std::string_view inside, std::string_view layout) {
  WeighedCode read;
  read.article = DigitsAt(inside, layout, 'I');
  const std::string cents = DigitsAt(inside, layout, 'P');
  const std::string grams = DigitsAt(inside, layout, 'W');
  if (!cents.empty()) read.price = NumberOrZero(cents) / 100;
  if (!grams.empty()) read.units = NumberOrZero(grams) / 1000;
  return read;
}

}  // namespace

std::optional<WeighedCode> ReadWeighedCode(std::string_view code, std::string_view layouts) {
  if (code.size() != kCodeLength || !AllDigits(code) || !CheckDigitHolds(code)) return std::nullopt;
  for (const std::string& layout : Split(layouts, " ")) {
    if (!IsLayout(layout) || !code.starts_with(std::string_view(layout).substr(0, kPrefix))) continue;
    return Read(code.substr(kPrefix, kInside), std::string_view(layout).substr(kPrefix + 1));
  }
  return std::nullopt;
}

bool AreWeighedLayouts(std::string_view layouts) {
  if (layouts.empty()) return true;
  const std::vector<std::string> all = Split(layouts, " ");
  return std::all_of(all.begin(), all.end(), [](const std::string& layout) { return IsLayout(layout); });
}

}  // namespace tpv
