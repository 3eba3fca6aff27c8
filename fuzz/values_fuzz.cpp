// Any text as a number, a date, a mask: read or refused, and what is shown of it
// reads back as the same.
#include <cmath>
#include <cstdlib>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "base/variant.h"
#include "data/sql_text.h"

namespace {

using namespace tpv;

void Require(bool holds) {
  if (!holds) std::abort();
}

void Numbers(std::string_view text) {
  if (const auto number = ParseNumber(text)) {
    Require(std::isfinite(*number));
    constexpr double kLargestExact = 999'999'999'999'999;  // its tenths do not fit 15 digits
    const auto again = ParseNumber(ToSpanish(*number));
    Require(std::abs(*number) > kLargestExact || again);
    Require(!again || std::abs(*again - *number) <= std::abs(*number) * 1e-14 + 1e-15);
    Require(sql::Number(*number).find_first_not_of("-0123456789.") == std::string::npos);
    for (int decimals = 0; decimals < 6; ++decimals) {
      const double rounded = RoundHalfAway(*number, decimals);
      Require(RoundHalfAway(rounded, decimals) == rounded);
    }
  }
  if (const auto whole = ParseInt32(text)) Require(ParseInt32(std::to_string(*whole)) == whole);
  (void)LeadingNumber(text);
}

void Dates(std::string_view text) {
  for (const auto& date : {ParseDayFirst(text), ParseIso(text), ParseTypedDate(text, {2026, 11, 24})}) {
    if (!date) continue;
    Require(IsValid(*date));
    Require(ParseIso(ToIso(*date)) == date);
  }
}

void Texts(std::string_view text) {
  const std::string valid = ValidUtf8(text);
  Require(ValidUtf8(valid) == valid);
  Require(Length(PadRight(valid, 32)) >= 32);
  Require(Length(Left(valid, 32)) <= 32);
  Require(OneLine(text).find_first_of("\r\n") == std::string::npos);
  const std::string quoted = sql::Quoted(text);
  const std::size_t inside = quoted.find('\'') + 1;  // behind "N'" where there are accents
  Require(ReplaceAll(quoted.substr(inside, quoted.size() - inside - 1), "''", "").find('\'') == std::string::npos);
  Require(FoldForSearch(FoldForSearch(valid)) == FoldForSearch(valid));
}

// The text before the first line break is the mask of what follows.
void Masks(std::string_view text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view mask = text.substr(0, end);
  const Variant value(std::string(text.substr(std::min(end + 1, text.size()))));
  (void)Format(value, mask);
  (void)Format(Variant(NumberOrZero(value.ToText())), mask);
  (void)FormatDate({2026, 11, 24, 10, 30, 0, 0}, mask);
  (void)FormatText(value.ToText(), mask);
}

void Variants(const Variant& value) {
  const auto convert = [](auto conversion) {
    try {
      conversion();
    } catch (const ConversionError&) {
    }
  };
  convert([&] { (void)value.ToInt16(); });
  convert([&] { (void)value.ToInt32(); });
  convert([&] { (void)value.ToInt64(); });
  convert([&] { (void)value.ToDouble(); });
  convert([&] { (void)value.ToMoney(); });
  convert([&] { (void)value.ToBool(); });
  convert([&] { (void)value.ToDate(); });
  (void)value.ToPlainText();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Numbers(text);
  Dates(text);
  Texts(text);
  Masks(text);
  Variants(Variant(std::string(text)));
  return 0;
}
