// The 32-column receipt of a collection or a payment out, for a shop that gives one.
#pragma once

#include <cstdint>

namespace tpv {

struct Context;

// Whether the machine's setting Paper.Receipts asks for them.
bool WantsReceipts(Context& context);

// Prints the entry (DiaCaj_Id) on the current printer: tickets paid and what the customer
// still owes, or what was paid out. Throws PrintError and DatabaseError.
void PrintReceipt(Context& context, std::int32_t entry);

}  // namespace tpv
