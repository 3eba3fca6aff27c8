// Display masks, read in one place: "#,##0.00", "DD/MM/YYYY HH:MM", "@@@…!".
#pragma once

#include <string>
#include <string_view>

#include "base/date_time.h"
#include "base/variant.h"

namespace tpv {

// Number masks: "0" a digit, "#" an optional digit, "," grouping by thousands,
// "." the decimal separator, anything else (such as "€") as it stands. Shown
// with the Spanish "." grouping and "," decimals; rounds half away from zero.
// A mask that ends in "." shows no separator. "##" of 0 is "".
std::string FormatNumber(double value, std::string_view mask);

// Date masks: d/dd, m/mm, yy/yyyy, h/hh, n/nn, s/ss in either case; "mm" right
// after an hour is minutes. "/" "-" ":" and blanks stand as they are.
std::string FormatDate(const DateTime& value, std::string_view mask);

// "@" masks: the text right-aligned in as many characters as there are "@",
// left-aligned when the mask ends in "!". Longer texts stay whole. Characters,
// not bytes, are counted.
std::string FormatText(std::string_view text, std::string_view mask);

// The value through the kind of mask that `mask` is; null is "". An empty mask
// gives Variant::ToText. A value that does not fit the mask is shown as text.
std::string Format(const Variant& value, std::string_view mask);

// `head` followed by `decimals` zeros: MaskWithDecimals("#,##0.", 2) is
// "#,##0.00". Negative or null-like counts give no decimals.
std::string MaskWithDecimals(std::string_view head, int decimals);

}  // namespace tpv
