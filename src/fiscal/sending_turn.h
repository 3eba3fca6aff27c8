// Whose turn it is to send a shop's records to the agency, and when the next message may
// go: a row of the store that all its tills share.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"

namespace tpv {
class Connection;
}

namespace tpv::fiscal {

struct SendingTurn {
  std::string holder;        // the till that sends; "" for none
  DateTime until;            // by then it has renewed its turn or is dead
  DateTime next;             // no message before
  int failures = 0;          // since the last answer: an outage while there are any
  std::int32_t handed = 0;   // up to this position records were handed over, answered or not
  std::string trouble;       // why the last message failed; "" when it did not
};

// The store's clock, by which all tills' turns are kept.
DateTime StoreTime(Connection& connection);

// Nullopt while nobody has ever sent.
std::optional<SendingTurn> ReadTurn(Connection& connection);

bool HasOther(const SendingTurn& turn, const std::string& holder, const DateTime& now);

// In a transaction of the caller's, as all below: true when `holder` has the turn now, for
// as long as one message may take. False while another till has it.
bool TakeTurn(Connection& connection, const std::string& holder);
// Before records up to this position are handed over; a lower one when the agency took none.
void NoteHanded(Connection& connection, const std::string& holder, std::int32_t position);
// After an answer that wants so long a pause, and after a message without one: then the turn
// is for whichever till comes first, for this one's line may be the trouble.
void NoteAnswered(Connection& connection, const std::string& holder, int wait_seconds);
void NoteFailed(Connection& connection, const std::string& holder, const std::string& trouble);
// Lets another till have it at once.
void GiveUpTurn(Connection& connection, const std::string& holder);

}  // namespace tpv::fiscal
