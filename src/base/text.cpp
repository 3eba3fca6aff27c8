#include "base/text.h"

#include <algorithm>

namespace tpv {

namespace {

constexpr char32_t kBroken = 0xFFFD;

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Bytes of the sequence that starts with this byte; 0 for a byte that cannot.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

bool IsCharacter(char32_t c) { return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF); }

// False for surrogates and for characters written longer than they need.
bool IsWellFormed(char32_t character, std::size_t length) {
  constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
  return character >= kLowest[length] && IsCharacter(character);
}

// How far the text goes in letters of one byte, which most texts do to their end.
std::size_t PlainLength(std::string_view utf8) {
  std::size_t position = 0;
  while (position < utf8.size() && (utf8[position] & 0x80) == 0) ++position;
  return position;
}

// The byte position behind the first `count` characters.
std::size_t ByteOffset(std::string_view utf8, std::size_t count) {
  std::size_t position = PlainLength(utf8.substr(0, count));
  count -= position;
  while (count > 0 && position < utf8.size()) {
    NextCharacter(utf8, position);
    --count;
  }
  return position;
}

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

char32_t Lower(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  if (c == 0x178) return 0xFF;
  const bool even_is_upper = (c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177);
  const bool odd_is_upper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
  if (even_is_upper && c != 0x130 && c != 0x131) return c | 1;
  if (odd_is_upper) return (c & 1) ? c + 1 : c;
  return c;
}

// The letter below the accent, for folded letters of Latin-1 and Latin
// Extended-A; any other character as it is.
char32_t BaseLetter(char32_t c) {
  constexpr std::string_view kBase =
      "aaaaaaaceeeeiiiidnooooo/ouuuuyty"                                   // U+00E0 on
      "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkkllllllll"  // U+0100 on
      "llnnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
  static_assert(kBase.size() == 0x180 - 0xE0);
  if (c < 0xE0 || c > 0x17F || c == 0xF7) return c;
  return static_cast<unsigned char>(kBase[c - 0xE0]);
}

bool IsCombiningAccent(char32_t c) { return c >= 0x300 && c <= 0x36F; }

}  // namespace

std::size_t Length(std::string_view utf8) {
  std::size_t position = PlainLength(utf8);
  std::size_t count = position;
  for (; position < utf8.size(); ++count) NextCharacter(utf8, position);
  return count;
}

std::string Left(std::string_view utf8, std::size_t count) {
  return std::string(utf8.substr(0, ByteOffset(utf8, count)));
}

std::string From(std::string_view utf8, std::size_t position) {
  return std::string(utf8.substr(ByteOffset(utf8, position == 0 ? 0 : position - 1)));
}

std::string TrimRight(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string Trim(std::string_view text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos ? std::string() : TrimRight(text.substr(start));
}

std::string PadRight(std::string_view utf8, std::size_t width) {
  const std::size_t length = Length(utf8);
  return std::string(utf8).append(width > length ? width - length : 0, ' ');
}

std::string PadLeft(std::string_view utf8, std::size_t width) {
  const std::size_t length = Length(utf8);
  return std::string(width > length ? width - length : 0, ' ').append(utf8);
}

std::string Centre(std::string_view utf8, std::size_t width) {
  const std::size_t length = Length(utf8);
  const std::size_t before = width > length ? (width - length) / 2 : 0;
  return PadRight(std::string(before, ' ') + std::string(utf8), width);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  if (separator.empty()) return {std::string(text)};
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (;;) {
    const std::size_t at = text.find(separator, start);
    pieces.emplace_back(text.substr(start, at - start));
    if (at == std::string_view::npos) return pieces;
    start = at + separator.size();
  }
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  std::size_t start = 0;
  for (;;) {
    const std::size_t at = text.find(what, start);
    result += text.substr(start, at - start);
    if (at == std::string_view::npos) return result;
    result += with;
    start = at + what.size();
  }
}

bool EqualNoCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualNoCase(text.substr(0, start.size()), start);
}

std::string FoldCase(std::string_view utf8) {
  std::string result;
  result.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    AppendCharacter(result, Lower(NextCharacter(utf8, position)));
  }
  return result;
}

std::string FoldForSearch(std::string_view utf8) {
  std::string folded;
  folded.reserve(utf8.size());
  FoldForSearch(utf8, folded);
  return folded;
}

void FoldForSearch(std::string_view utf8, std::string& folded) {
  for (std::size_t position = 0; position < utf8.size();) {
    if (static_cast<unsigned char>(utf8[position]) < 0x80) {  // nearly all there is
      folded += LowerAscii(utf8[position++]);
      continue;
    }
    const char32_t character = Lower(NextCharacter(utf8, position));
    if (!IsCombiningAccent(character)) AppendCharacter(folded, BaseLetter(character));
  }
}

char32_t NextCharacter(std::string_view utf8, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(utf8[position]);
  const std::size_t length = SequenceLength(lead);
  if (length == 1) return static_cast<char32_t>(utf8[position++]);
  char32_t character = length == 0 ? 0 : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (position + i >= utf8.size() || !IsContinuation(utf8[position + i])) {
      ++position;
      return kBroken;
    }
    character = (character << 6) | (static_cast<unsigned char>(utf8[position + i]) & 0x3FU);
  }
  const bool good = length != 0 && IsWellFormed(character, length);
  position += good ? length : 1;
  return good ? character : kBroken;
}

void AppendCharacter(std::string& utf8, char32_t character) {
  const char32_t c = IsCharacter(character) ? character : kBroken;
  const auto tail = [&](int shift) { utf8 += static_cast<char>(0x80U | ((c >> shift) & 0x3FU)); };
  if (c < 0x80) {
    utf8 += static_cast<char>(c);
  } else if (c < 0x800) {
    utf8 += static_cast<char>(0xC0U | (c >> 6));
    tail(0);
  } else if (c < 0x10000) {
    utf8 += static_cast<char>(0xE0U | (c >> 12));
    tail(6);
    tail(0);
  } else {
    utf8 += static_cast<char>(0xF0U | (c >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string ValidUtf8(std::string_view text) {
  std::size_t position = PlainLength(text);
  std::string result(text.substr(0, position));
  result.reserve(text.size());
  while (position < text.size()) {
    AppendCharacter(result, NextCharacter(text, position));
  }
  return result;
}

std::string OneLine(std::string_view text) {
  std::string line = ValidUtf8(text);
  for (char& c : line) {
    if ((c >= 0 && c < ' ') || c == 0x7F) c = ' ';
  }
  return line;
}

}  // namespace tpv
