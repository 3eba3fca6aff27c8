// Mending what the agency rejected or took with errors: records stay, a new one says it
// right.
#pragma once

#include "fiscal/issuing.h"

namespace tpv::fiscal {

// What the agency said until now of an issuer's records of a number; the same number of
// another issuer is another document to it.
struct PastReplies {
  bool accepted = false;  // with errors or without, or it holds another one
  bool rejected = false;
};
PastReplies RepliesTo(Connection& connection, Mode mode, const std::string& issuer, const std::string& number);

// A new record of the same document, with the shop's name and tax number as they are now
// and this buyer where it names one, in a transaction of its own. What the agency holds, and
// what is cancelled, stays the issuer's that it names. Throws RecordRefused for a record that
// needs no mending or was mended already, and DatabaseError.
void Mend(const Desk& desk, std::int32_t position, const Buyer& buyer);

}  // namespace tpv::fiscal
