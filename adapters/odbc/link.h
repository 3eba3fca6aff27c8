// One session on the server, from log-in to its end: statements and their rows,
// every failure as a DatabaseError. For the adapter's own files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/odbc/errors.h"
#include "adapters/odbc/faults.h"
#include "adapters/odbc/handles.h"
#include "adapters/odbc/target.h"

namespace tpv::odbc {

struct Limits {
  int login_seconds;
  int query_seconds;
};

class Link {
 public:
  // Logs in; `login` and `faults` outlive the link. Throws DatabaseError.
  Link(const Login& login, const Limits& limits, const Faults& faults);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  // Runs one statement up to its first result with rows; without one, to its
  // end, and the handle is empty. One that pulses while it runs may be given up.
  enum class Waiting { Silent, Pulsing };
  StatementHandle Execute(std::string_view sql, Waiting waiting = Waiting::Silent);
  // The next row; false behind the last, when later results held no error.
  bool Fetch(StatementHandle& statement);
  void Run(std::string_view sql) { Execute(sql); }

  // Whether it can still be used; a loss shows first in a failing call.
  bool IsDead() const { return dead_; }
  // Whether a call failed since the last time this was asked.
  bool TakeFailure() { return std::exchange(failed_, false); }
  bool IsSqlServer() const { return sql_server_; }

  // Throws unless `result` is a success.
  void Check(SQLRETURN result, SQLSMALLINT kind, SQLHANDLE handle);

 private:
  void MeetFault(Call call, Moment moment, std::string_view sql = {});
  [[noreturn]] void Fail(const std::vector<Report>& reports);
  void NoticeLoss();
  SQLRETURN Send(const StatementHandle& statement, std::string_view sql, Waiting waiting);
  bool NextResult(StatementHandle& statement);
  bool SkipToRows(StatementHandle& statement);
  void FindOutServer();

  const Limits limits_;
  const Faults& faults_;
  const Login& login_;
  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  bool connected_ = false;
  bool dead_ = false;
  bool failed_ = false;
  bool sql_server_ = false;
};

}  // namespace tpv::odbc
