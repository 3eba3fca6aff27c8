// How a record's lists stand in their columns of the store, a line an entry.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fiscal/record.h"

namespace tpv::fiscal {

// "21 5.2 100.00 21.00 5.20": rate, surcharge, base and their taxes.
std::string RatesColumn(const std::vector<RateAmounts>& rates);
// "24-11-2026 T/361"
std::string RelatedColumn(const std::vector<DocumentId>& related);

// What is no such text throws DatabaseError: somebody has changed it.
std::vector<RateAmounts> ReadRates(std::string_view column);
std::vector<DocumentId> ReadRelated(std::string_view column);

// Conditions on the records of a ticket (Cav_Id) or an invoice (Fav_Id), as their index has them.
std::string OfTicket(std::int32_t id);
std::string OfInvoice(std::int32_t id);

// Euros of the store in cents, and back.
Cents ToCents(double euros);
double ToEuros(Cents cents);

}  // namespace tpv::fiscal
