// How lines of a 32-column receipt are put together.
#pragma once

#include <string>
#include <string_view>

#include "base/date_time.h"

namespace tpv {

struct Context;
class PrintDocument;

inline constexpr std::size_t kTicketWidth = 32;
inline constexpr double kLineGap = 0.3;  // centimetres between two text lines

// "#,##0.00" right-aligned in 9 characters.
std::string Amount9(double euros);
// The first 23 characters, or the text filled up to 23 with blanks. Characters
// that would break the line are blanks.
std::string Description23(std::string_view text);
// A description and its amount in 32 characters: an amount that needs more than 9
// takes them from the description.
std::string DescriptionAndAmount(std::string_view description, double euros);
std::string Right32(std::string_view text);
std::string Centre32(std::string_view text);

// Prints a text line with its line end, which leaves an empty line behind.
void PrintTextLine(PrintDocument& document, std::string_view text);
// Moves up over the empty line, so that the next one closes up.
void CloseGap(PrintDocument& document);

// "Apertura " and the moment, printed as one document on the current printer: a
// printer that kicks its drawer at each document opens it. Throws PrintError.
void PrintOpeningLine(Context& context);

}  // namespace tpv
