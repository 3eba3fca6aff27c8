// UTF-8 texts counted in characters, and the comparisons of the shop's data.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tpv {

inline constexpr std::string_view kLineBreak = "\r\n";

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }  // in no other script

std::size_t Length(std::string_view utf8);                      // characters
std::string Left(std::string_view utf8, std::size_t count);     // first characters
std::string From(std::string_view utf8, std::size_t position);  // from the 1-based character on
std::string Trim(std::string_view text);                        // blanks at both ends
std::string TrimRight(std::string_view text);
std::string PadRight(std::string_view utf8, std::size_t width);  // blanks after; never cuts
std::string PadLeft(std::string_view utf8, std::size_t width);
std::string Centre(std::string_view utf8, std::size_t width);    // extra blank goes after
// An empty separator, or nothing to replace, leaves the text in one piece.
std::vector<std::string> Split(std::string_view text, std::string_view separator);
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with);
bool StartsWithNoCase(std::string_view text, std::string_view start);
bool EqualNoCase(std::string_view left, std::string_view right);  // ASCII names only

// Case folding for Latin letters, accented ones included; accents stay.
std::string FoldCase(std::string_view utf8);
// FoldCase and accents taken off ("Peña" is "pena"): for searching as one types.
std::string FoldForSearch(std::string_view utf8);
// The same, behind what `folded` holds already.
void FoldForSearch(std::string_view utf8, std::string& folded);

// Latin letters that are followed by their accent as one character each ("e" and U+0301
// is "é"): what the eye counts as one is one.
std::string Composed(std::string_view utf8);

// One Unicode character at `position` (moved past it); U+FFFD for broken bytes.
char32_t NextCharacter(std::string_view utf8, std::size_t& position);
// U+FFFD is appended for a number that is no character.
void AppendCharacter(std::string& utf8, char32_t character);
// The text with every broken byte sequence replaced by U+FFFD.
std::string ValidUtf8(std::string_view text);
// Valid UTF-8 with line breaks and other control characters as blanks.
std::string OneLine(std::string_view text);

}  // namespace tpv
