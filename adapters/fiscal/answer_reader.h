// Reads what the tax agency answers to a message of records.
#pragma once

#include <string_view>

#include "fiscal/agency.h"

namespace tpv::fiscal {

// Throws MessageRefused for a SOAP fault and NoAnswer for what cannot be understood.
Answer ReadAnswer(std::string_view soap);

}  // namespace tpv::fiscal
