#include "adapters/odbc/errors.h"

#include <algorithm>

#include "adapters/odbc/open_server.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

// Numbers of SQL Server's messages.
enum Native {
  kUnknownObject = 208,
  kNoPermission = 229,
  kUnknownDatabase = 911,
  kNothingToRollBack = 3903,
  kDeadlock = 1205,
  kLockTimeout = 1222,
  kCannotOpenDatabase = 4060,
  kLoginFailed = 18456,
};

// The open server's states for what the other has numbers for. One of them stands for all
// that it has no number for, a wrong value as well as a lock: there the text tells.
struct EngineReport {
  const char* state;  // or how it begins
  const char* text;   // part of what it says
  const char* sqlstate;
  int native;
};
constexpr const char* kWithoutNumber = "YY002";
constexpr EngineReport kEngineReports[] = {
    {"40P01", "", "40001", kDeadlock},
    {"40001", "", "40001", kDeadlock},
    {"55P03", "", "HYT00", kLockTimeout},
    {"57014", "", "HYT00", 0},
    {"57P0", "", "08S01", 0},
    {"08", "", "08S01", 0},
    {kWithoutNumber, "due to lock timeout", "HYT00", kLockTimeout},
    {kWithoutNumber, "deadlock detected", "40001", kDeadlock},
    {kWithoutNumber, "could not serialize access", "40001", kDeadlock},
    {kWithoutNumber, "due to statement timeout", "HYT00", 0},
    {kWithoutNumber, "terminating connection", "08S01", 0}};

Report InServersNumbers(const Report& report) {
  const std::string state = EngineState(report.native);
  for (const EngineReport& known : kEngineReports) {
    if (state.empty() || !state.starts_with(known.state) || report.text.find(known.text) == std::string::npos) continue;
    return {known.sqlstate, known.native, report.text};
  }
  return report;
}

bool IsLogin(std::string_view sqlstate, int native) {
  return native == kLoginFailed || sqlstate == "28000";
}

bool IsMissingDatabase(const Report& report) {
  return report.native == kCannotOpenDatabase || report.native == kUnknownDatabase;
}

// Drivers report "connection failed" behind the server's own reason.
int Weight(const Report& report) {
  if (IsMissingDatabase(report)) return 3;
  if (IsLogin(report.sqlstate, report.native)) return 2;
  return report.sqlstate.starts_with("01") ? 0 : 1;  // 01: remarks
}

// The text behind "[FreeTDS][SQL Server]".
std::string WithoutOrigin(std::string_view text) {
  while (text.starts_with('[')) {
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return Trim(text);
}

std::string ByNumber(const Report& report) {
  if (IsMissingDatabase(report)) {
    return "La base de datos no existe en el servidor, o el usuario no puede abrirla";
  }
  if (IsLogin(report.sqlstate, report.native)) return "El servidor no acepta el usuario o la contraseña";
  switch (report.native) {
    case kDeadlock:
      return "Otra caja estaba usando los mismos datos y el servidor deshizo la operación; repítala";
    case kLockTimeout:
      return "Otra caja está usando los mismos datos; inténtelo de nuevo";
    case kNoPermission:
      return "El usuario no tiene permiso en el servidor: ";
    case kUnknownObject:
      return "Falta una tabla en la base de datos: ";
    default:
      return {};
  }
}

std::string ByState(const std::string& sqlstate) {
  if (sqlstate == kNotEncrypted) {
    return "No se puede abrir una conexión cifrada con el servidor de la tienda; compruebe la red, "
           "que esté encendido, que admita el cifrado y que su certificado lleve su nombre y sea de "
           "una autoridad conocida (TPV_ODBC_CA)";
  }
  if (sqlstate == kNoCredentials) {
    return "Faltan el usuario o la contraseña del servidor de la tienda: TPV_ODBC_USER y "
           "TPV_ODBC_PASSWORD, o un fichero suyo en TPV_ODBC_CREDENTIALS";
  }
  if (sqlstate == kNotConnected || sqlstate == "HYT01") {
    return "No se encuentra el servidor de la tienda; compruebe la red y que esté encendido";
  }
  if (IsConnectionLoss(sqlstate)) return "Se ha perdido la conexión con el servidor de la tienda";
  if (IsTimeout(sqlstate)) return "El servidor de la tienda no responde a tiempo; inténtelo de nuevo";
  if (sqlstate == "IM002") return "No existe el origen de datos o falta su controlador ODBC";
  if (sqlstate == "40001") return ByNumber({sqlstate, kDeadlock, {}});
  return {};
}

std::string Readable(const Report& report) {
  std::string text = ByNumber(report);
  if (text.ends_with(": ")) return text + WithoutOrigin(report.text);
  if (text.empty()) text = ByState(report.sqlstate);
  return text.empty() ? WithoutOrigin(report.text) : text;
}

}  // namespace

bool IsConnectionLoss(const std::string& sqlstate) { return sqlstate.starts_with("08"); }

bool IsLoginRefusal(const DatabaseError& error) {
  return IsLogin(error.sqlstate(), error.native());
}

bool IsMissingTable(const DatabaseError& error) {
  return error.native() == kUnknownObject || error.sqlstate() == "42S02";
}

bool IsNothingToRollBack(const DatabaseError& error) { return error.native() == kNothingToRollBack; }

bool IsTimeout(const std::string& sqlstate) {
  return sqlstate == "HYT00" || sqlstate == "S1T00" || sqlstate == "HYT01";
}

DatabaseError ErrorFrom(const std::vector<Report>& reports) {
  if (reports.empty()) return DatabaseError("El controlador ODBC ha fallado sin decir por qué", "HY000");
  const Report report = InServersNumbers(*std::max_element(
      reports.begin(), reports.end(),
      [](const Report& left, const Report& right) { return Weight(left) < Weight(right); }));
  return DatabaseError(Readable(report), report.sqlstate, report.native);
}

}  // namespace tpv::odbc
