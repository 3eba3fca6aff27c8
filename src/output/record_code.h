// The square code of a sale's invoice record, on top of its ticket.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

struct Context;
class PrintDocument;

// The address in the code; "" where the shop makes no records or the sale has none: neither
// of its own nor its invoice. Throws DatabaseError.
std::string CodeOfSale(Context& context, std::int32_t sale);

// The code with its texts above and below it, in the width of a ticket.
void PrintRecordCode(PrintDocument& document, const std::string& url);

}  // namespace tpv
