// What a ticket or invoice amounts to by rate: the cents that its lines say, so that
// the record's total is what the customer paid.
#pragma once

#include <string>
#include <vector>

#include "fiscal/record.h"

namespace tpv {
class Connection;
}

namespace tpv::fiscal {

// A rate's total with tax divided into its base, its tax and its surcharge.
RateAmounts Divided(double rate, double surcharge, Cents total);

// Over the lines of the tickets of a condition on Cav: " WHERE …". Empty without lines.
// Throws DatabaseError.
std::vector<RateAmounts> ReadAmounts(Connection& connection, const std::string& tickets);

// Puts them into the record, with its totals.
void SetAmounts(Record& record, std::vector<RateAmounts> rates);

}  // namespace tpv::fiscal
