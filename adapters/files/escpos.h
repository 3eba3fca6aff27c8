// The language of receipt printers.
#pragma once

#include <string>

#include "adapters/files/code_table.h"
#include "adapters/files/receipt_code.h"
#include "adapters/files/ticket_page.h"

namespace tpv {

// The text in the table's bytes. A letter that is not in it gives its base letter, the
// euro "EUR" where the columns behind or before it have room, another character a
// question mark.
std::string InTable(std::string_view utf8, const CodeTable& table);

// Sets the printer up, prints the page's rows with bold where it is asked for, its
// square codes, and cuts the paper.
std::string ReceiptBytes(const TicketPage& page, const CodeTable& table,
                         const CodePrinting& codes = {});

}  // namespace tpv
