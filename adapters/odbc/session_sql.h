// What the adapter itself says to the server: the session's set-up, the store's
// lock, the mark of a transaction.
#pragma once

#include <string>
#include <vector>

namespace tpv::odbc {

// Each statement on its own; the session is no good when one of them fails.
std::vector<std::string> SessionSetup();
// Wishes only: the language of the server's own messages.
std::string SessionLanguage();
// Answers 2 when the session reads dates day first.
std::string DateProbe();

// The table that holds the number of each session's last stored transaction.
inline constexpr const char* kMarkTable = "TpvSesiones";
// Touches no row: fails where the table is not there or not for this user.
std::string LookForMarks();
std::string ForgetOldMarks();
// How long a statement waits for rows that another session holds.
std::string WaitForRows(int milliseconds);
inline constexpr int kRowPatience = 15000;

// A transaction of this session: `session` and `number` name it.
struct Mark {
  std::string session;
  int number = 0;

  std::vector<std::string> Write() const;
  // Answers the number of the session's last stored transaction, or no row.
  std::string Read() const;
};

// Begins and takes the store's lock within `seconds`, then runs `more`. Answers
// a negative number, with nothing begun, when the lock was not to be had.
std::string BeginLocked(int seconds, const std::vector<std::string>& more);
// 1 while a transaction is open and can still be stored.
std::string TransactionProbe();
std::string RollbackIfOpen();

}  // namespace tpv::odbc
