// An ODBC driver: SQLite's, which calls itself a SQL Server and knows as much of one as
// a session needs. The store's lock is SQLite's own.
#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

namespace {

template <typename Function>
Function* Driver(const char* name) {
  static void* const driver = ::dlopen(TPV_SQLITE_ODBC_DRIVER, RTLD_NOW);
  return reinterpret_cast<Function*>(::dlsym(driver, name));
}

bool Holds(const std::string& sql, const char* text) { return sql.find(text) != std::string::npos; }

SQLRETURN Run(SQLHSTMT statement, const std::string& sql) {
  static const auto run = Driver<decltype(SQLExecDirect)>("SQLExecDirect");
  auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.data()));
  return run(statement, text, static_cast<SQLINTEGER>(sql.size()));
}

// The lock's answer: below zero when another session has it.
SQLRETURN Lock(SQLHSTMT statement) {
  static const auto free = Driver<decltype(SQLFreeStmt)>("SQLFreeStmt");
  const bool locked = SQL_SUCCEEDED(Run(statement, "BEGIN IMMEDIATE"));
  free(statement, SQL_CLOSE);
  return Run(statement, locked ? "SELECT 0 AS resultado" : "SELECT -1 AS resultado");
}

std::atomic<bool> cancelled = false;

// Three tenths of a second, or until another thread cancels it.
SQLRETURN Delay(SQLHSTMT statement) {
  cancelled = false;
  for (int step = 0; step < 30; ++step) {
    if (cancelled) return Run(statement, "cancelled");  // an error
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return Run(statement, "SELECT 1 AS hecho");
}

}  // namespace

extern "C" SQLRETURN SQLCancel(SQLHSTMT) {
  cancelled = true;
  return SQL_SUCCESS;
}

extern "C" SQLRETURN SQLGetInfo(SQLHDBC connection, SQLUSMALLINT what, SQLPOINTER answer, SQLSMALLINT room,
                                SQLSMALLINT* length) {
  if (what != SQL_DBMS_NAME) return Driver<decltype(SQLGetInfo)>("SQLGetInfo")(connection, what, answer, room, length);
  std::strncpy(static_cast<char*>(answer), "Microsoft SQL Server", static_cast<std::size_t>(room));
  return SQL_SUCCESS;
}

extern "C" SQLRETURN SQLExecDirect(SQLHSTMT statement, SQLCHAR* text, SQLINTEGER length) {
  const std::string sql(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  if (Holds(sql, "sp_getapplock")) return Lock(statement);
  if (sql.starts_with("SET ")) return Run(statement, "SELECT 1");
  if (Holds(sql, "CAST('02/03/2026'")) return Run(statement, "SELECT 2 AS dia");
  if (Holds(sql, "WAITFOR")) return Delay(statement);
  if (Holds(sql, "@@VERSION")) return Run(statement, "SELECT 'Babelfish for PostgreSQL' AS version");
  if (Holds(sql, "INFORMATION_SCHEMA")) return Run(statement, "SELECT name AS TABLE_NAME FROM sqlite_master");
  if (Holds(sql, "XACT_STATE")) return Run(statement, "SELECT 1 AS abierta");
  return Run(statement, Holds(sql, "@@TRANCOUNT") ? "ROLLBACK TRANSACTION" : sql);
}
