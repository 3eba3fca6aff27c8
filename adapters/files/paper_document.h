// What a printer of the till is given, and the same as bytes that outlive the program.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "adapters/files/ticket_page.h"

namespace tpv {

struct SheetsPdf {
  std::string bytes;
};
struct RawBytes {
  std::string bytes;
};

struct PaperDocument {
  std::string title;  // what the operator knows it by; "" when nobody misses it
  std::variant<TicketPage, SheetsPdf, RawBytes> content;
};

// The content, not the title.
std::string KeptContent(const PaperDocument& document);
// Throws PrintError for bytes that are no such content.
PaperDocument DocumentOf(std::string title, std::string_view kept, const CodeEncoder& codes);

}  // namespace tpv
