// What a ticket or invoice amounts to by rate: the cents that its lines say, so that
// the record's total is what the customer paid.
#pragma once

#include <cstdint>
#include <vector>

#include "fiscal/record.h"

namespace tpv {
class Connection;
}

namespace tpv::fiscal {

// A rate's total with tax divided into its base, its tax and its surcharge.
RateAmounts Divided(double rate, double surcharge, Cents total);

// What the lines of a ticket (Cav_Id) come to, a line being worth what the customer paid, and
// those of the tickets of an invoice (Fav_Id). The highest rate first; empty without lines.
// Both throw DatabaseError.
std::vector<RateAmounts> TicketAmounts(Connection& connection, std::int32_t ticket);
std::vector<RateAmounts> InvoiceAmounts(Connection& connection, std::int32_t invoice);

// Puts them into the record, with its totals.
void SetAmounts(Record& record, std::vector<RateAmounts> rates);

}  // namespace tpv::fiscal
