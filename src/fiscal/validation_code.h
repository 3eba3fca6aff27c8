// The square code of a record: whoever reads it finds the invoice at the agency.
#pragma once

#include <string>

#include "fiscal/record.h"

namespace tpv::fiscal {

// What stands above and below it on paper, letter for letter.
inline constexpr std::string_view kAboveCode = "QR tributario:";
inline constexpr std::string_view kBelowCode = "Factura verificable en la sede electrónica de la AEAT";

// The address that it leads to.
std::string ValidationUrl(const Record& record);

}  // namespace tpv::fiscal
