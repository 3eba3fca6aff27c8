#include "bench/server/raw_line.h"

#include <stdexcept>

namespace tpv::bench {

RawLine::RawLine(const std::string& connection_string) {
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
  SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment_, &session_);
  std::string text = connection_string;
  auto* bytes = reinterpret_cast<SQLCHAR*>(text.data());
  Require(SQLDriverConnect(session_, nullptr, bytes, SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
          "log-in");
  Run("SET DATEFORMAT dmy");
}

RawLine::~RawLine() {
  SQLDisconnect(session_);
  SQLFreeHandle(SQL_HANDLE_DBC, session_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

void RawLine::Require(SQLRETURN result, const char* what) const {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  SQLCHAR text[512] = "";
  SQLGetDiagRec(SQL_HANDLE_DBC, session_, 1, nullptr, nullptr, text, sizeof text, nullptr);
  throw std::runtime_error(std::string(what) + ": " + reinterpret_cast<const char*>(text));
}

void RawLine::Run(const std::string& sql) {
  SQLHSTMT statement = nullptr;
  SQLAllocHandle(SQL_HANDLE_STMT, session_, &statement);
  std::string text = sql;
  Require(SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS), sql.c_str());
  ReadAll(statement);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

void RawLine::ReadAll(SQLHSTMT statement) {
  SQLSMALLINT columns = 0;
  SQLNumResultCols(statement, &columns);
  if (columns == 0) return;
  char field[512];
  while (SQL_SUCCEEDED(SQLFetch(statement))) {
    for (SQLSMALLINT column = 1; column <= columns; ++column) {
      SQLLEN length = 0;
      SQLGetData(statement, static_cast<SQLUSMALLINT>(column), SQL_C_CHAR, field, sizeof field, &length);
    }
  }
}

}  // namespace tpv::bench
