#include "adapters/odbc/session_sql.h"

namespace tpv::odbc {

namespace {

std::string Condition(const std::string& session) { return " WHERE Sesion = '" + session + "'"; }

}  // namespace

std::vector<std::string> SessionSetup() {
  return {"SET DATEFORMAT dmy",
          "SET QUOTED_IDENTIFIER ON",
          "SET ANSI_NULLS ON",
          "SET ANSI_WARNINGS ON",
          "SET ANSI_PADDING ON",
          "SET CONCAT_NULL_YIELDS_NULL ON",
          "SET ARITHABORT ON",
          "SET NOCOUNT ON",
          "SET XACT_ABORT OFF",
          "SET IMPLICIT_TRANSACTIONS OFF",
          "SET TEXTSIZE 2147483647",
          WaitForRows(kRowPatience),
          "SET TRANSACTION ISOLATION LEVEL READ COMMITTED"};
}

std::string SessionLanguage() { return "SET LANGUAGE Spanish"; }

std::string DateProbe() { return "SELECT DAY(CAST('02/03/2026' AS datetime)) AS dia"; }

std::string LookForMarks() { return "DELETE FROM " + std::string(kMarkTable) + " WHERE 1 = 0"; }

std::string ForgetOldMarks() {
  return "DELETE FROM " + std::string(kMarkTable) +
         " WHERE Momento < DATEADD(day, -30, GETDATE())";
}

std::string WaitForRows(int milliseconds) {
  return "SET LOCK_TIMEOUT " + std::to_string(milliseconds);
}

std::vector<std::string> Mark::Write() const {
  const std::string table(kMarkTable);
  return {"DELETE FROM " + table + Condition(session),
          "INSERT INTO " + table + " (Sesion, Numero) VALUES ('" + session + "', " +
              std::to_string(number) + ")"};
}

std::string Mark::Read() const {
  return "SELECT Numero FROM " + std::string(kMarkTable) + Condition(session);
}

std::string BeginLocked(int seconds, const std::vector<std::string>& more) {
  std::string sql =
      "BEGIN TRANSACTION; DECLARE @tpv int; "
      "EXEC @tpv = sp_getapplock @Resource = 'ZRTPVE', @LockMode = 'Exclusive', "
      "@LockOwner = 'Transaction', @LockTimeout = " +
      std::to_string(seconds * 1000) + "; ";
  for (const std::string& statement : more) sql += "IF @tpv >= 0 " + statement + "; ";
  return sql + "IF @tpv < 0 ROLLBACK TRANSACTION; SELECT @tpv AS resultado";
}

std::string TransactionProbe() {
  return "SELECT CASE WHEN XACT_STATE() = 1 THEN 1 ELSE 0 END AS abierta";
}

std::string RollbackIfOpen() { return "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"; }

}  // namespace tpv::odbc
