// A square code in the language of receipt printers.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/square_code.h"

namespace tpv {

struct CodePrinting {
  bool as_image = false;     // for printers that have no command for it
  double dots_per_mm = 8;    // most print 203 dots an inch
};

// "own" or "image", each with the printer's dots an inch ("own:180") when they are not
// 203. Nullopt for anything else.
std::optional<CodePrinting> ParseCodePrinting(std::string_view setting);

// What ParseCodePrinting takes, for the technician.
inline constexpr const char* kCodePrintings =
    "own (la impresora dibuja el código) o image (lo dibuja la caja), con los puntos por pulgada si "
    "no son 203 (own:180)";

// The code in the middle of the paper, white above and below it.
std::string CodeBytes(const SquareCode& code, const CodePrinting& printing);

}  // namespace tpv
