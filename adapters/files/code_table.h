// The letters beyond ASCII that a receipt printer has, and the number under which it has
// them: models differ.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tpv {

struct CodeTable {
  std::string_view name;          // "858"
  unsigned char position = 0;     // what ESC t selects it with
  std::u32string_view characters;  // of the bytes from 0x80 on

  bool Has(char32_t character) const { return characters.find(character) != characters.npos; }
};

// 858 at 19, which most printers have.
CodeTable UsualCodeTable();

// "437", "850", "858" or "1252", at its usual position or at another ("858:13"), or a
// model ("tm-t20"). Nullopt for anything else.
std::optional<CodeTable> ParseCodeTable(std::string_view setting);

// What ParseCodeTable takes, for the technician.
inline constexpr const char* kCodeTables =
    "437, 850, 858 o 1252, con otra posición si hace falta (858:13), o un modelo: tm-t20, tm-t88, "
    "tm-u220, tm-u200, tm-u300, bixolon, star o basic";

}  // namespace tpv
