// Records as the agency wants them written.
#pragma once

#include <span>
#include <string>

#include "fiscal/record.h"

namespace tpv::fiscal {

// A message's body, as the agency's schema describes it: up to 1,000 records of one issuer
// in the order of the chain, at least one. `outage`: sending was not possible meanwhile.
std::string MessageBody(std::span<const Record> records, bool outage);

// The same as it goes over the line.
std::string SoapMessage(std::span<const Record> records, bool outage);

}  // namespace tpv::fiscal
