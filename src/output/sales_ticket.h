// Prints the 32-column sales ticket of the context's current sale.
#pragma once

#include <string_view>

namespace tpv {

struct Context;

// What the paper is for. A reprint says that it is one where the setting Paper.MarkReprints
// asks for that.
enum class TicketPaper { Customer, Reprint, ShopCopy };

// Everything printed is read at this moment, so a reprint shows the ticket as
// stored. An error is shown to the operator; nothing is written.
void PrintSalesTicket(Context& context, TicketPaper paper = TicketPaper::Customer);

// The shop's own copy, with the discount that was accepted, as the setting Paper.ShopCopy
// wants it: "si", or "descuentos" for the tickets that have one. None without the setting.
void PrintShopCopy(Context& context);
bool IsShopCopySetting(std::string_view value);

}  // namespace tpv
