// A store behind an ODBC driver that Debian has, for one test: SQLite's. It shows
// how the adapter deals with a real driver manager and driver, not SQL Server.
#pragma once

#include <memory>
#include <string>

#include "adapters/files/temporary_folder.h"
#include "adapters/odbc/odbc_connection.h"

namespace tpv {

#ifdef TPV_SQLITE_ODBC_DRIVER
inline constexpr const char* kSqliteDriver = TPV_SQLITE_ODBC_DRIVER;
inline constexpr const char* kPretendedServer = TPV_PRETENDED_SERVER;
#else
inline constexpr const char* kSqliteDriver = nullptr;
inline constexpr const char* kPretendedServer = nullptr;
#endif

class OdbcStore {
 public:
  explicit OdbcStore(const char* driver = kSqliteDriver) : driver_(driver) {
    const auto connection = Open();
    connection->Execute("CREATE TABLE Pro (Pro_Id INTEGER PRIMARY KEY AUTOINCREMENT, "
                        "Pro_Cod integer, Pro_Nom varchar(50))");
    connection->Execute(
        "CREATE TABLE DiaCaj (DiaCaj_Id INTEGER PRIMARY KEY AUTOINCREMENT, DiaCaj_Caja integer, "
        "DiaCaj_Entrega float, DiaCaj_Fecha timestamp, DiaCaj_Obs varchar(100), "
        "DiaCaj_SaldoIni decimal(19,4))");
    connection->Execute("CREATE TABLE QCIERRES (QCIERRES_id INTEGER PRIMARY KEY AUTOINCREMENT, "
                        "QCIERRES_Asunto varchar(50), QCIERRES_Texto text)");
  }

  void KeepMarks() {
    Open()->Execute("CREATE TABLE TpvSesiones (Sesion varchar(40) PRIMARY KEY, Numero integer)");
  }
  // StepAPI: rows are stepped as they are fetched.
  odbc::Target target() const {
    const char* patience = driver_ == kSqliteDriver ? "2000" : "50";
    return {std::string("Driver=") + driver_ + ";Database=" + folder_ / "tienda.sqlite" +
                ";StepAPI=Yes;Timeout=" + patience,
            {}, {}, false, {}};
  }
  std::unique_ptr<OdbcConnection> Open(OdbcOptions options = {}) const {
    return std::make_unique<OdbcConnection>(target(), std::move(options));
  }

 private:
  TemporaryFolder folder_;
  const char* driver_;
};

}  // namespace tpv
