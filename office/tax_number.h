// Spanish tax numbers: of persons (NIF), foreigners (NIE) and companies.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tpv::office {

// The number in capitals without blanks, points and dashes ("b-30.123.459" is
// "B30123459"); nullopt when its form or its control character is wrong.
std::optional<std::string> TaxNumber(std::string_view text);
// What is wrong with it, "" when nothing is.
std::string TaxNumberFault(std::string_view text);

}  // namespace tpv::office
