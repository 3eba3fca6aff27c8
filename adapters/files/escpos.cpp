#include "adapters/files/escpos.h"

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kColumns = 32;  // of a ticket's row

// What word processors put into names, and what everybody reads it as.
constexpr std::u32string_view kTypographic = U"‘’‚“”„‐‑‒–—…•™ȘșȚț";
constexpr std::string_view kTypewritten = "'''\"\"\"-----.*tSsTt";
static_assert(kTypographic.size() == kTypewritten.size());

bool IsBlank(char32_t c) {
  return c == U' ' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F ||
         c == 0x205F || c == 0x3000;
}

// Marks that take no room: joiners, directions, accents on nothing.
bool IsUnseen(char32_t c) {
  return c == 0xAD || (c >= 0x200B && c <= 0x200F) || c == 0x2060 || c == 0xFEFF ||
         (c >= 0x300 && c <= 0x36F);
}

std::u32string Characters(std::string_view utf8) {
  const std::string composed = Composed(utf8);
  std::u32string characters;
  for (std::size_t at = 0; at < composed.size();) {
    const char32_t c = NextCharacter(composed, at);
    if (!IsUnseen(c)) characters += IsBlank(c) ? U' ' : c;
  }
  return characters;
}

// Takes two blanks out of the last run of three or more before `end`.
bool NarrowBefore(std::u32string& row, std::size_t end) {
  const std::size_t run = row.rfind(U"   ", end);
  if (run == std::u32string::npos) return false;
  row.erase(run, 2);
  return true;
}

// The currency's letters for its sign, where no column moves for it.
void SpellEuro(std::u32string& row) {
  for (std::size_t at; (at = row.find(U'€')) != std::u32string::npos;) {
    const std::size_t behind = row.find_first_not_of(U' ', at + 1);
    const bool last = behind == std::u32string::npos;
    if (!last && behind - at > 3) {
      row.erase(at + 1, 2);
      row.replace(at, 1, U"EUR");
    } else if (last && at + 3 <= kColumns) {
      row.replace(at, std::u32string::npos, U"EUR");
    } else if (last && NarrowBefore(row, at)) {
      row.replace(at - 2, std::u32string::npos, U"EUR");
    } else {
      row[at] = U'E';
    }
  }
}

char Plain(char32_t character) {
  const std::size_t at = kTypographic.find(character);
  if (at != std::u32string_view::npos) return kTypewritten[at];
  std::string letter;
  AppendCharacter(letter, character);
  const std::string base = FoldForSearch(letter);
  if (base.size() != 1) return '?';
  const bool capital = FoldCase(letter) != letter && base[0] >= 'a' && base[0] <= 'z';
  return capital ? static_cast<char>(base[0] - 'a' + 'A') : base[0];
}

char Byte(char32_t character, const CodeTable& table) {
  if (character < 0x80) return static_cast<char>(character);
  const std::size_t at = table.characters.find(character);
  return at == std::u32string_view::npos ? Plain(character) : static_cast<char>(0x80 + at);
}

std::string_view Bold(bool on) {
  return on ? std::string_view("\x1B\x45\x01", 3) : std::string_view("\x1B\x45\0", 3);
}

}  // namespace

std::string InTable(std::string_view utf8, const CodeTable& table) {
  std::u32string row = Characters(utf8);
  if (!table.Has(U'€')) SpellEuro(row);
  std::string bytes;
  for (const char32_t character : row) bytes += Byte(character, table);
  return bytes;
}

std::string ReceiptBytes(const TicketPage& page, const CodeTable& table, const CodePrinting& codes) {
  std::string bytes = "\x1B@\x1Bt";  // reset; the letters' table
  bytes += static_cast<char>(table.position);
  bool bold = false;
  for (const TextRow& row : RowsOf(page)) {
    if (row.code != nullptr) {
      bytes += CodeBytes(*row.code, codes);
      continue;
    }
    if (row.bold != bold && !row.text.empty()) bytes += Bold(bold = row.bold);
    bytes += InTable(row.text, table) + "\n";
  }
  bytes += std::string_view("\x1DVB\0", 4);  // feed to the knife and cut
  return bytes;
}

}  // namespace tpv
