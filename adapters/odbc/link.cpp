#include "adapters/odbc/link.h"

#include <array>

#include "adapters/odbc/beside.h"
#include "adapters/odbc/encryption.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

std::vector<Report> ReportsOf(SQLSMALLINT kind, SQLHANDLE handle) {
  std::vector<Report> reports;
  std::array<SQLCHAR, 6> state{};
  std::array<SQLCHAR, SQL_MAX_MESSAGE_LENGTH * 4> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  for (SQLSMALLINT at = 1; SQL_SUCCEEDED(SQLGetDiagRec(
           kind, handle, at, state.data(), &native, text.data(), text.size(), &length));
       ++at) {
    reports.push_back({reinterpret_cast<const char*>(state.data()), native,
                       ValidUtf8(reinterpret_cast<const char*>(text.data()))});
  }
  return reports;
}

// A number goes where the interface has a pointer.
SQLPOINTER Number(int value) {
  return reinterpret_cast<SQLPOINTER>(static_cast<SQLLEN>(value));  // NOLINT(performance-no-int-to-ptr)
}

SQLCHAR* Characters(std::string_view text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

EnvironmentHandle NewEnvironment() {
  EnvironmentHandle environment(SQL_NULL_HANDLE);
  SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, Number(SQL_OV_ODBC3), 0);
  return environment;
}

}  // namespace

Link::Link(const Login& login, const Limits& limits, const Faults& faults)
    : limits_(limits),
      faults_(faults),
      login_(login),
      environment_(NewEnvironment()),
      connection_(environment_.get()) {
  MeetFault(Call::Connect, Moment::Before);
  SQLHDBC handle = connection_.get();
  SQLSetConnectAttr(handle, SQL_ATTR_LOGIN_TIMEOUT, Number(limits.login_seconds), 0);
  if (!login.freetds_settings.empty()) UseFreeTdsSettings(login.freetds_settings);
  Check(SQLDriverConnect(handle, nullptr, Characters(login.text),
                         static_cast<SQLSMALLINT>(login.text.size()), nullptr, 0, nullptr,
                         SQL_DRIVER_NOPROMPT),
        SQL_HANDLE_DBC, handle);
  connected_ = true;
  FindOutServer();
}

Link::~Link() {
  if (!connected_ || SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) return;
  // Some drivers hold on to an open transaction.
  SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  SQLDisconnect(connection_.get());
}

void Link::FindOutServer() {
  std::array<char, 128> name{};
  SQLSMALLINT length = 0;
  SQLGetInfo(connection_.get(), SQL_DBMS_NAME, name.data(), name.size(), &length);
  sql_server_ = std::string_view(name.data()).find("SQL Server") != std::string_view::npos;
}

void Link::MeetFault(Call call, Moment moment, std::string_view sql) {
  if (!faults_) return;
  const std::string state = faults_(call, moment, sql);
  if (!state.empty()) Fail({{state, 0, "fault made on purpose"}});
}

void Link::Fail(const std::vector<Report>& reports) {
  failed_ = true;
  DatabaseError error = ErrorFrom(reports);
  const bool lost = IsConnectionLoss(error.sqlstate());
  dead_ = dead_ || lost;
  if (!connected_ && !login_.with_credentials && IsLoginRefusal(error)) {
    error = ErrorFrom({{kNoCredentials, 0, {}}});
  } else if (!connected_ && (lost || IsTimeout(error.sqlstate()))) {
    error = ErrorFrom({{login_.encrypted ? kNotEncrypted : kNotConnected, error.native(), {}}});
  } else if (dead_ && !lost && !IsTimeout(error.sqlstate())) {
    error = ErrorFrom({{"08S01", error.native(), {}}});
  }
  throw error;
}

// Some drivers report a loss under a state of its own kind.
void Link::NoticeLoss() {
  if (!connected_) return;
  SQLUINTEGER gone = SQL_CD_FALSE;
  SQLGetConnectAttr(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &gone, 0, nullptr);
  dead_ = dead_ || gone == SQL_CD_TRUE;
}

void Link::Check(SQLRETURN result, SQLSMALLINT kind, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(result)) return;
  std::vector<Report> reports = ReportsOf(kind, handle);
  for (Report& report : reports) report.text = ReplaceAll(report.text, login_.secret, "***");
  NoticeLoss();
  Fail(reports);
}

// One that was given up counts as failed: the server may have ended its transaction.
SQLRETURN Link::Send(const StatementHandle& statement, std::string_view sql, Waiting waiting) {
  const auto send = [&] {
    return SQLExecDirect(statement.get(), Characters(sql), static_cast<SQLINTEGER>(sql.size()));
  };
  if (waiting == Waiting::Silent) return send();
  try {
    return RunBeside(statement.get(), send);
  } catch (...) {
    failed_ = true;
    throw;
  }
}

StatementHandle Link::Execute(std::string_view sql, Waiting waiting) {
  MeetFault(Call::Execute, Moment::Before, sql);
  StatementHandle statement(connection_.get());
  SQLSetStmtAttr(statement.get(), SQL_ATTR_QUERY_TIMEOUT, Number(limits_.query_seconds), 0);
  const SQLRETURN result = Send(statement, sql, waiting);
  // SQL_NO_DATA: an update that touched no row.
  if (result != SQL_NO_DATA) Check(result, SQL_HANDLE_STMT, statement.get());
  if (!SkipToRows(statement)) statement = {};
  MeetFault(Call::Execute, Moment::After, sql);
  return statement;
}

// A statement of several parts may answer with counts before its rows, and the
// error of a later part shows only when its turn comes.
bool Link::SkipToRows(StatementHandle& statement) {
  SQLSMALLINT columns = 0;
  do {
    Check(SQLNumResultCols(statement.get(), &columns), SQL_HANDLE_STMT, statement.get());
  } while (columns == 0 && NextResult(statement));
  return columns != 0;
}

bool Link::NextResult(StatementHandle& statement) {
  const SQLRETURN result = SQLMoreResults(statement.get());
  if (result == SQL_NO_DATA) return false;
  Check(result, SQL_HANDLE_STMT, statement.get());
  return true;
}

bool Link::Fetch(StatementHandle& statement) {
  MeetFault(Call::Fetch, Moment::Before);
  const SQLRETURN result = SQLFetch(statement.get());
  if (result != SQL_NO_DATA) {
    Check(result, SQL_HANDLE_STMT, statement.get());
    return true;
  }
  while (NextResult(statement)) {
  }
  return false;
}

}  // namespace tpv::odbc
