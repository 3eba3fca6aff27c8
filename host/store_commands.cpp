#include "host/store_commands.h"

#include <filesystem>
#include <iostream>

#include "adapters/headless/recorders.h"
#include "adapters/headless/scenario/display.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "base/number_text.h"
#include "host/left_sales.h"
#include "host/play.h"
#include "host/server_store.h"
#include "host/store.h"
#include "host/store_check.h"
#include "host/store_copy.h"
#include "host/store_making.h"
#include "host/store_mend.h"
#include "host/store_place.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

constexpr const char* kCopyUsage = "store copy FICHERO|--odbc CONEXIÓN FICHERO|--odbc CONEXIÓN";
constexpr const char* kCheckUsage = "store check FICHERO|--odbc CONEXIÓN";
constexpr const char* kReleaseUsage = "store release FICHERO|--odbc CONEXIÓN [NÚMERO]";
constexpr const char* kMendUsage = "store mend FICHERO|--odbc CONEXIÓN [--yes]";
constexpr const char* kSqlUsage = "sql FICHERO|--odbc CONEXIÓN \"SENTENCIA\"…";

// What is missing is said beside what the order answers.
std::unique_ptr<Connection> OpenAndWarn(const StorePlace& place, const Clock& clock) {
  auto connection = OpenExisting(place, clock);
  if (const std::string text = MissingLogOf(*connection); !text.empty()) std::cerr << "Aviso " << text << "\n";
  return connection;
}

void CopyToFile(Connection& from, const std::string& path, const Clock& clock,
                const CopyProgress& progress) {
  NewStore store(path);
  {
    SqliteConnection to(NewStore::PartialPath(path), clock);
    CopyStore(from, to, Numbers::Plain, progress);
  }
  store.Keep();
}

void CopyToServer(Connection& from, const std::string& name, const CopyProgress& progress) {
  MakeServerTables(*OpenServer(name));
  CopyStore(from, *OpenServer(name), Numbers::Switched, progress);
}

int Copy(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace source = TakePlace(arguments, at, kCopyUsage);
  const StorePlace target = TakePlace(arguments, at, kCopyUsage);
  if (at != arguments.size()) throw UsageError(kCopyUsage);
  const StepClock clock;
  const auto from = OpenAndWarn(source, clock);
  long total = 0;
  const CopyProgress progress = [&](std::string_view table, long rows) {
    total += rows;
    out << table << ": " << rows << "\n" << std::flush;
  };
  if (target.server) {
    CopyToServer(*from, target.name, progress);
  } else {
    CopyToFile(*from, target.name, clock, progress);
  }
  out << "Copiado y comprobado: " << total << " filas\n";
  return 0;
}

// The engine's own look at the files first: rules asked of damaged ones mean little.
bool CheckFiles(Connection& connection, std::ostream& out) {
  auto* files = dynamic_cast<SqliteConnection*>(&connection);
  const std::vector<std::string> damage =
      files != nullptr ? files->Damage() : std::vector<std::string>();
  for (const std::string& line : damage) out << "DAÑADO " << line << "\n";
  return damage.empty();
}

int Check(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kCheckUsage);
  if (at != arguments.size()) throw UsageError(kCheckUsage);
  const StepClock clock;
  const auto connection = OpenExisting(place, clock);
  if (!CheckFiles(*connection, out)) return 1;
  if (const std::string text = MissingLogOf(*connection); !text.empty()) out << "Aviso " << text << "\n";
  if (const std::string partial = NewStore::PartialPath(place.name); fs::exists(partial)) {
    out << "Aviso Se está haciendo o quedó a medias «" << partial << "»\n";
  }
  const auto findings = CheckStore(*connection);
  out << FindingsText(findings);
  const bool broken = AnyBroken(findings);
  out << (broken ? "El almacén tiene errores: no lo use y llame a soporte\n"
                 : "El almacén está bien\n");
  return broken ? 1 : 0;
}

int Release(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kReleaseUsage);
  const auto sale = at < arguments.size() ? ParseInt32(arguments[at++]) : std::optional(0);
  if (at != arguments.size() || !sale) throw UsageError(kReleaseUsage);
  const StepClock clock;
  const auto connection = OpenAndWarn(place, clock);
  out << (*sale == 0 ? SalesInProgressText(*connection) : ReleaseSale(*connection, *sale));
  return 0;
}

int MendStore(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kMendUsage);
  const bool agreed = at < arguments.size() && arguments[at] == "--yes";
  if (at + (agreed ? 1 : 0) != arguments.size()) throw UsageError(kMendUsage);
  const StepClock clock;
  out << MendStore(*OpenAndWarn(place, clock), agreed);
  return 0;
}

}  // namespace

int StoreCommand(const Arguments& arguments, std::ostream& out) {
  const std::string order = arguments.empty() ? "" : arguments[0];
  if (order == "create") return CreateCommand(arguments, out);
  if (order == "fill") return FillCommand(arguments, out);
  if (order == "copy") return Copy(arguments, out);
  if (order == "check") return Check(arguments, out);
  if (order == "release") return Release(arguments, out);
  if (order == "mend") return MendStore(arguments, out);
  throw UsageError("store create|fill|copy|check|release|mend|backup|restore|archive …");
}

int SqlCommand(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 0;
  const StorePlace place = TakePlace(arguments, at, kSqlUsage);
  if (at == arguments.size()) throw UsageError(kSqlUsage);
  const StepClock clock;
  const auto connection = OpenAndWarn(place, clock);
  for (; at < arguments.size(); ++at) {
    out << scenario::PlainRows(*connection->Execute(arguments[at]));
  }
  return 0;
}

}  // namespace tpv
