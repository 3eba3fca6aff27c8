// The 32-column paper of a counted drawer, which goes with its closure's ticket.
#pragma once

#include <cstdint>

namespace tpv {

struct CashCount;
struct Context;

// On the current printer, as a document of its own. Throws PrintError.
void PrintCashCount(Context& context, std::int32_t closure_id, const CashCount& count);

}  // namespace tpv
