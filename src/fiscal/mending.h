// Mending what the agency rejected or took with errors: records stay, a new one says it
// right.
#pragma once

#include "fiscal/issuing.h"

namespace tpv::fiscal {

// What the agency said of the shop's records of a number until now; a shop whose tax number
// was wrong is another one to it.
struct PastReplies {
  bool accepted = false;  // with errors or without, or it holds another one
  bool rejected = false;
};
PastReplies RepliesTo(Connection& connection, const Setup& setup, const std::string& number);

// A new record of the same document, with the shop's name and tax number as they are now
// and this buyer where it names one, in a transaction of its own. Throws RecordRefused for
// a record that needs no mending or was mended already, and DatabaseError.
void Mend(const Desk& desk, std::int32_t position, const Buyer& buyer);

}  // namespace tpv::fiscal
