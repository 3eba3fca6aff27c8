// Numbers as a Spanish operator types and reads them, and as SQL takes them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tpv {

// Reads a Spanish number: optional sign, digits with optional "." grouping,
// optional "," decimals, blanks around it; "12.5" (a point that cannot be a
// grouping) reads as 12.5 too. Nullopt for anything else ("1e400", "abc", "",
// a number beyond what 15 digits before the comma hold).
std::optional<double> ParseNumber(std::string_view text);

// The same, with 0 for a text that is no number: for fields whose emptiness
// counts as zero.
double NumberOrZero(std::string_view text);

// A whole number in the 32-bit range, or nullopt.
std::optional<std::int32_t> ParseInt32(std::string_view text);
std::int32_t Int32OrZero(std::string_view text);

// The leading digits of a text ("03 - Tarjeta" is 3), 0 when there are none.
std::int32_t LeadingNumber(std::string_view text);

// Decimal comma, at most 15 significant digits, no trailing zeros: "12,5".
std::string ToSpanish(double value);
// Decimal point, at most 15 significant digits, no exponent below 1e15: what
// SQL text and technicians' output use.
std::string ToPlain(double value);

}  // namespace tpv
