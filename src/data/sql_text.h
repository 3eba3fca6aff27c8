// How values enter SQL text: numbers as numbers, quotes doubled, dates checked.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tpv::sql {

std::string Number(std::int64_t value);
std::string Number(double value);  // decimal point, no exponent, 15 digits at most
// 'O''Brien'; NUL bytes dropped. A text with letters beyond ASCII goes out as the
// national text that all columns of texts hold (N'Łódź'): a server would cut a plain
// one down to its code page.
std::string Quoted(std::string_view text);
// The whole number that a field's text stands for, 0 when it is none: what goes
// where a statement takes a till, an agent or a code.
std::string WholeNumber(std::string_view field_text);
// A date field's text for use inside quotes, as "dd/mm/yyyy"; throws
// std::invalid_argument when it is no date, so nothing else can get in.
std::string DateText(std::string_view field_text);

}  // namespace tpv::sql
