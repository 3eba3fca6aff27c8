// Sends the shop's invoice records to the tax agency, a message at a time, in the order of
// the chain, and keeps what the agency says of each.
#pragma once

#include <string>

#include "base/date_time.h"

namespace tpv {
class Connection;
}

namespace tpv::fiscal {

class Agency;

// How one attempt to send ended.
struct SendingRound {
  enum class End {
    Answered,  // the numbers below say what the agency did with the message
    NothingWaits,
    TooEarly,     // not before `next`: the agency wants a pause, or a failure does
    AnotherTill,  // has the turn
    Refused,      // the message as a whole; `trouble` says why, as in those below
    NoAnswer,     // the agency may have the records or not
    CannotSend,   // the certificate or its settings are wrong
  };
  End end = End::NothingWaits;
  int accepted = 0;
  int with_errors = 0;
  int rejected = 0;
  int duplicates = 0;  // of all these: the agency had one already
  DateTime next;
  std::string trouble;
};

// For the technician, in Spanish, one line.
std::string Told(const SendingRound& round);

enum class When { InTurn, AtOnce };  // at once: whatever pause a failure asked for

// One message at most, and those that find the record for which the agency refuses a message
// as a whole. `holder` names this program among all that send. Throws DatabaseError; what was
// sent then is sent again and known to be the same.
SendingRound SendWaiting(Connection& connection, Agency& agency, const std::string& holder, When when);

// A name that no other program has.
std::string NewHolder();
// The turn is another till's to take at once. Best effort: otherwise it is after a while.
void LeaveTurn(Connection* connection, const std::string& holder) noexcept;
// By hand: at once, leaving the turn to the tills.
SendingRound SendOnce(Connection& connection, Agency& agency);

}  // namespace tpv::fiscal
