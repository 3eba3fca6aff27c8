// What a driver reported, turned into what an operator can act on.
#pragma once

#include <string>
#include <vector>

#include "platform/database.h"

namespace tpv::odbc {

// One diagnostic record of the driver.
struct Report {
  std::string sqlstate;
  int native = 0;
  std::string text;
};

// No session came about; with encryption demanded, that may be the reason.
inline constexpr const char* kNotConnected = "08001";
inline constexpr const char* kNotEncrypted = "08004";
// A log-in without user or password was refused.
inline constexpr const char* kNoCredentials = "28001";
bool IsLoginRefusal(const DatabaseError& error);
bool IsMissingTable(const DatabaseError& error);
// Whether the report says that the connection is gone, or never came about.
bool IsConnectionLoss(const std::string& sqlstate);
// The server has ended the transaction by itself.
bool IsNothingToRollBack(const DatabaseError& error);
// Whether a statement was given up for lack of an answer in time.
bool IsTimeout(const std::string& sqlstate);

// The error of a failed call: of several reports the one that tells most. Never
// empty-handed: no report at all is an error of its own.
DatabaseError ErrorFrom(const std::vector<Report>& reports);

}  // namespace tpv::odbc
