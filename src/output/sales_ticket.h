// Prints the 32-column sales ticket of the context's current sale.
#pragma once

namespace tpv {

struct Context;

// Everything printed is read at this moment, so a reprint shows the ticket as
// stored. An error is shown to the operator; nothing is written.
void PrintSalesTicket(Context& context);

}  // namespace tpv
