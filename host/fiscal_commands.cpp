#include "host/fiscal_commands.h"

#include <algorithm>
#include <ostream>

#include "data/sql_text.h"
#include "fiscal/archived_records.h"
#include "fiscal/setup.h"
#include "host/fiscal_check.h"
#include "host/fiscal_orders.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/server_store.h"
#include "host/store_place.h"

namespace tpv {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kOnUsage = "fiscal on pruebas|real FICHERO|--odbc CONEXIÓN";
constexpr const char* kOffUsage = "fiscal off FICHERO|--odbc CONEXIÓN";
constexpr const char* kSetUsage = "fiscal set FICHERO|--odbc CONEXIÓN productor|productor-nif|instalacion|zona VALOR";
constexpr const char* kFiscalCheckUsage = "fiscal check FICHERO|--odbc CONEXIÓN";

std::unique_ptr<Connection> Open(const Machine& machine, const StorePlace& place) {
  auto connection = OpenExisting(place, machine.clock);
  if (place.server) MakeServerTables(*connection);  // those of records, where they are missing
  return connection;
}

// "pruebas" or "real".
fiscal::Mode ReadMode(const Arguments& arguments) {
  const std::string word = arguments.size() > 1 ? arguments[1] : "";
  if (word == "pruebas") return fiscal::Mode::Trial;
  if (word == "real") return fiscal::Mode::Real;
  throw UsageError(kOnUsage);
}

int On(const Machine& machine, const Arguments& arguments, std::ostream& out) {
  const fiscal::Mode mode = ReadMode(arguments);
  std::size_t at = 2;
  const StorePlace place = TakePlace(arguments, at, kOnUsage);
  if (at != arguments.size()) throw UsageError(kOnUsage);
  const auto connection = Open(machine, place);
  std::vector<std::string> missing;
  if (const std::string obstacle = AgencyObstacle(machine.settings); !obstacle.empty()) {
    missing.push_back("un certificado que sirva. " + obstacle);
  }
  fiscal::TurnOn(fiscal::DeskOf(*connection, machine.digest.get()), mode, missing);
  out << (mode == fiscal::Mode::Real ? "Registros de facturación encendidos: se envían a la agencia tributaria\n"
                                     : "Registros de facturación encendidos, en pruebas\n");
  return 0;
}

int Off(const Machine& machine, const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kOffUsage);
  if (at != arguments.size()) throw UsageError(kOffUsage);
  const auto connection = Open(machine, place);
  fiscal::TurnOff(fiscal::DeskOf(*connection, nullptr));
  out << "Registros de facturación apagados\n";
  return 0;
}

int Set(const Machine& machine, const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kSetUsage);
  if (at + 2 != arguments.size()) throw UsageError(kSetUsage);
  const auto& names = fiscal::SettingNames();
  const auto name = std::find_if(names.begin(), names.end(),
                                 [&](const auto& known) { return known.word == arguments[at]; });
  if (name == names.end()) throw UsageError(kSetUsage);
  Open(machine, place)->Execute("UPDATE Parametros SET " + std::string(name->parameter) + " = " +
                                sql::Quoted(arguments[at + 1]));
  out << arguments[at] << " = " << arguments[at + 1] << "\n";
  return 0;
}

int Check(const Machine& machine, const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kFiscalCheckUsage);
  if (at != arguments.size()) throw UsageError(kFiscalCheckUsage);
  const auto connection = OpenExisting(place, machine.clock);
  const FiscalCheck check = CheckFiscal(*connection);
  out << FindingsText(check.findings);
  const bool broken = AnyBroken(check.findings);
  out << check.records << (broken ? " registros: la cadena tiene errores, llame a soporte\n"
                                  : " registros: la cadena está entera y dice lo que los tickets y las facturas\n");
  const auto archived = fiscal::ReadArchivedRecords(fiscal::DeskOf(*connection, nullptr));
  if (archived.count > 0) {
    out << archived.count << " de ellos son de tickets que no están aquí, sino en " << archived.files << "\n";
  }
  return broken ? 1 : 0;
}

}  // namespace

int FiscalCommand(Machine& machine, const Arguments& arguments, std::ostream& out) {
  const std::string order = arguments.empty() ? "" : arguments[0];
  if (order == "on") return On(machine, arguments, out);
  if (order == "off") return Off(machine, arguments, out);
  if (order == "set") return Set(machine, arguments, out);
  if (order == "check") return Check(machine, arguments, out);
  const Arguments behind(arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end());
  if (order == "export") return ExportRecordsOrder(machine, behind, out);
  if (order == "send") return SendRecordsOrder(machine, behind, out);
  throw UsageError("fiscal on|off|set|check|export|send …");
}

}  // namespace tpv
