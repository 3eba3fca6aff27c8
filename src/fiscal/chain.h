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

// Gives the record its issuer, moment, position and fingerprint, and stores it. Throws
// RecordRefused and DatabaseError.
void Append(const Desk& desk, const Setup& setup, Record& record);

}  // namespace tpv::fiscal
