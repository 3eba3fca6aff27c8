// The end of the chain: a new record takes its place behind the last one. Inside the
// caller's transaction, whose lock makes the shop's tills take turns.
#pragma once

#include "fiscal/record.h"
#include "fiscal/setup.h"
#include "platform/database.h"

namespace tpv::fiscal {

// A record that must not be made. what() is for the operator, whole.
class RecordRefused : public DatabaseError {
 public:
  using DatabaseError::DatabaseError;
};

// Where the next record goes.
struct ChainEnd {
  DateTime now;  // universal time by the store's clock
  std::int32_t of_number = 0;  // the newest record of the number asked for; 0 for none
  // The last record of the store, of whatever chain; position 0 for none.
  PreviousRecord last;
  std::string moment;
  Mode mode = Mode::Off;
  std::string installation;
};
// One question, asked in the transaction of the record's.
ChainEnd ReadEnd(Connection& connection, const std::string& number);

// Gives the record its moment, position and fingerprint, and its issuer unless it names an
// older one of the shop, and stores it at the end. Throws RecordRefused and DatabaseError.
void Append(const Desk& desk, const Setup& setup, const ChainEnd& end, Record& record);

}  // namespace tpv::fiscal
