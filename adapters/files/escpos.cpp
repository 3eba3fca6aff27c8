#include "adapters/files/escpos.h"

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::u32string_view kUpperHalf =
    U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒ"
    U"áíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
    U"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈ€ÍÎÏ┘┌█▄¦Ì▀"
    U"ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0";
static_assert(kUpperHalf.size() == 128);

// What word processors put into names, and what everybody reads it as.
constexpr std::u32string_view kTypographic = U"‘’‚“”„‐‑‒–—…•™";
constexpr std::string_view kTypewritten = "'''\"\"\"-----.*t";
static_assert(kTypographic.size() == kTypewritten.size());

char Plain(char32_t character) {
  const std::size_t at = kTypographic.find(character);
  if (at != std::u32string_view::npos) return kTypewritten[at];
  std::string letter;
  AppendCharacter(letter, character);
  letter = FoldForSearch(letter);
  return letter.size() == 1 ? letter[0] : '?';
}

char Byte(char32_t character) {
  if (character < 0x80) return static_cast<char>(character);
  const std::size_t at = kUpperHalf.find(character);
  return at == std::u32string_view::npos ? Plain(character) : static_cast<char>(0x80 + at);
}

}  // namespace

std::string CodePage858(std::string_view utf8) {
  std::string bytes;
  for (std::size_t at = 0; at < utf8.size();) bytes += Byte(NextCharacter(utf8, at));
  return bytes;
}

std::string ReceiptBytes(const TicketPage& page) {
  std::string bytes = "\x1B@\x1Bt\x13";  // reset; code page 858
  bool bold = false;
  for (const TextRow& row : RowsOf(page)) {
    if (row.bold != bold && !row.text.empty()) {
      bold = row.bold;
      bytes += bold ? std::string_view(
                          "\x1B"
                          "E\x01",
                          3)
                    : std::string_view(
                          "\x1B"
                          "E\0",
                          3);
    }
    bytes += CodePage858(row.text) + "\n";
  }
  bytes += std::string_view("\x1DVB\0", 4);  // feed to the knife and cut
  return bytes;
}

}  // namespace tpv
