// The text of a record that is fingerprinted, and how its amounts and dates are
// written, in the text and wherever the agency reads them.
#pragma once

#include <string>

#include "fiscal/record.h"

namespace tpv {
class Digest;
}

namespace tpv::fiscal {

std::string AmountText(Cents cents);           // "-123.45"
std::string DayText(const DateTime& date);     // "24-11-2026"

// Of everything but `text` and `fingerprint`, which need not be there yet.
std::string FingerprintText(const Record& record);

// Gives the record its text and fingerprint. Throws what the digest throws.
void Fingerprint(Record& record, const Digest& digest);

}  // namespace tpv::fiscal
