// The language of receipt printers.
#pragma once

#include <string>

#include "adapters/files/ticket_page.h"

namespace tpv {

// Code page 858. A letter that is not in it gives its base letter, another
// character a question mark.
std::string CodePage858(std::string_view utf8);

// Sets the printer up, prints the page's rows with bold where it is asked for,
// and cuts the paper.
std::string ReceiptBytes(const TicketPage& page);

}  // namespace tpv
