// Bar codes that a scale prints: the article and its price or weight in one code
// of thirteen digits.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tpv {

struct WeighedCode {
  std::string article;          // its code, as the digits stand
  std::optional<double> price;  // euros, with tax
  std::optional<double> units;  // kilograms
};

// Reads `code` by the shop's layouts, "20=IIIIIPPPPP 29=IIIIVWWWWW": behind each
// prefix of two digits (20 to 29) what the ten digits after it are: I the
// article, P cents, W grams, anything else is passed over. Nullopt for a code
// without a layout, or whose last digit does not prove it right.
std::optional<WeighedCode> ReadWeighedCode(std::string_view code, std::string_view layouts);

// Whether a setting's text says layouts; "" is none.
bool AreWeighedLayouts(std::string_view layouts);

}  // namespace tpv
