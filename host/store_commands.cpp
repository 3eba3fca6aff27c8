#include "host/store_commands.h"

#include <filesystem>
#include <ostream>

#include "adapters/files/private_files.h"
#include "adapters/headless/recorders.h"
#include "adapters/headless/scenario/display.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "base/number_text.h"
#include "host/demo/demonstration.h"
#include "host/left_sales.h"
#include "host/play.h"
#include "host/server_store.h"
#include "host/store.h"
#include "host/store_check.h"
#include "host/store_copy.h"
#include "host/store_mend.h"
#include "office/shop_ini.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

constexpr const char* kCreateUsage = "store create FICHERO|--odbc CONEXIÓN [--demo|--empty|--shop FICHERO.ini]";
constexpr const char* kCopyUsage = "store copy FICHERO|--odbc CONEXIÓN FICHERO|--odbc CONEXIÓN";
constexpr const char* kCheckUsage = "store check FICHERO|--odbc CONEXIÓN";
constexpr const char* kReleaseUsage = "store release FICHERO|--odbc CONEXIÓN [NÚMERO]";
constexpr const char* kMendUsage = "store mend FICHERO|--odbc CONEXIÓN [--yes]";
constexpr const char* kSqlUsage = "sql FICHERO|--odbc CONEXIÓN \"SENTENCIA\"…";

// Where a store is: a file, or behind a connection.
struct Place {
  bool server = false;
  std::string name;
};

// Reads the place at `at`, which moves behind it.
Place TakePlace(const Arguments& arguments, std::size_t& at, const char* usage) {
  Place place;
  place.server = at < arguments.size() && arguments[at] == "--odbc";
  at += place.server ? 1 : 0;
  if (at >= arguments.size() || arguments[at].starts_with("--")) throw UsageError(usage);
  place.name = arguments[at++];
  return place;
}

// These orders bring no store up to date.
std::unique_ptr<Connection> OpenExisting(const Place& place, const Clock& clock) {
  if (place.server) return OpenServer(place.name);
  return OpenExistingStore(place.name, clock, OpenMode::AsItIs);
}

// Throws FileError with a line for each refusal.
void Require(const office::Refusals& refusals, std::string text) {
  if (refusals.empty()) return;
  for (const office::Refusal& refusal : refusals) text += "\n  " + office::RefusalText(refusal);
  throw FileError(text);
}

// The file's shop; everything wrong with it is told at once.
office::ShopSetup ReadShop(const std::string& path) {
  const auto text = ReadFile(path);
  if (!text) throw FileError("No existe «" + path + "»");
  office::ShopFile file = office::ReadShopFile(*text);
  Require(file.refusals, "«" + path + "» no vale para crear una tienda");
  return std::move(file.setup);
}

int CreateShop(const Place& place, const std::string& shop, std::ostream& out) {
  const office::ShopSetup setup = ReadShop(shop);
  if (place.server) {
    MakeServerTables(*OpenServer(place.name));
    Require(office::StoreShop(*OpenServer(place.name), setup), "No se ha creado la tienda");
  } else {
    MakeShop(place.name, setup, StepClock());
  }
  out << "Tienda creada en " << (place.server ? "el servidor" : place.name) << "\n";
  return 0;
}

int Create(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const Place place = TakePlace(arguments, at, kCreateUsage);
  const std::string option = at < arguments.size() ? arguments[at++] : "--demo";
  if (option == "--shop" && at + 1 == arguments.size()) return CreateShop(place, arguments[at], out);
  if (at != arguments.size()) throw UsageError(kCreateUsage);
  if (option != "--demo" && option != "--empty") throw UsageError("opción desconocida: " + option);
  const Contents contents = option == "--demo" ? Contents::Demonstration : Contents::Empty;
  const StepClock clock;
  if (!place.server) {
    MakeStore(place.name, contents, clock);
    out << "Almacén creado en " << place.name << "\n";
    return 0;
  }
  if (!PrepareServer(place.name, contents, clock)) {
    throw DatabaseError("El almacén del servidor ya tiene datos: se dejan como están");
  }
  out << "Almacén creado en el servidor\n";
  return 0;
}

int Fill(const Arguments& arguments, std::ostream& out) {
  if (arguments.size() < 2 || arguments.size() % 2 != 0) {
    throw UsageError("store fill FICHERO [--tickets N] [--days D] [--articles A] [--seed S]");
  }
  LargeStore size;
  for (std::size_t i = 2; i + 1 < arguments.size(); i += 2) {
    const auto number = ParseInt32(arguments[i + 1]);
    if (!number || *number < 1) throw UsageError(arguments[i] + ": se espera un número");
    if (arguments[i] == "--tickets") {
      size.tickets = *number;
    } else if (arguments[i] == "--days") {
      size.days = *number;
    } else if (arguments[i] == "--articles") {
      size.articles = *number;
    } else if (arguments[i] == "--seed") {
      size.seed = static_cast<std::uint64_t>(*number);
    } else {
      throw UsageError("opción desconocida: " + arguments[i]);
    }
  }
  MakeLargeStore(arguments[1], size, StepClock());
  out << "Almacén creado en " << arguments[1] << "\n";
  return 0;
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
  const Place source = TakePlace(arguments, at, kCopyUsage);
  const Place target = TakePlace(arguments, at, kCopyUsage);
  if (at != arguments.size()) throw UsageError(kCopyUsage);
  const StepClock clock;
  const auto from = OpenExisting(source, clock);
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
  const Place place = TakePlace(arguments, at, kCheckUsage);
  if (at != arguments.size()) throw UsageError(kCheckUsage);
  const StepClock clock;
  const auto connection = OpenExisting(place, clock);
  if (!CheckFiles(*connection, out)) return 1;
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
  const Place place = TakePlace(arguments, at, kReleaseUsage);
  const auto sale = at < arguments.size() ? ParseInt32(arguments[at++]) : std::optional(0);
  if (at != arguments.size() || !sale) throw UsageError(kReleaseUsage);
  const StepClock clock;
  const auto connection = OpenExisting(place, clock);
  out << (*sale == 0 ? SalesInProgressText(*connection) : ReleaseSale(*connection, *sale));
  return 0;
}

int Mend(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const Place place = TakePlace(arguments, at, kMendUsage);
  const bool agreed = at < arguments.size() && arguments[at] == "--yes";
  if (at + (agreed ? 1 : 0) != arguments.size()) throw UsageError(kMendUsage);
  const StepClock clock;
  out << MendStore(*OpenExisting(place, clock), agreed);
  return 0;
}

}  // namespace

int StoreCommand(const Arguments& arguments, std::ostream& out) {
  const std::string order = arguments.empty() ? "" : arguments[0];
  if (order == "create") return Create(arguments, out);
  if (order == "fill") return Fill(arguments, out);
  if (order == "copy") return Copy(arguments, out);
  if (order == "check") return Check(arguments, out);
  if (order == "release") return Release(arguments, out);
  if (order == "mend") return Mend(arguments, out);
  throw UsageError("store create|fill|copy|check|release|mend …");
}

int SqlCommand(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 0;
  const Place place = TakePlace(arguments, at, kSqlUsage);
  if (at == arguments.size()) throw UsageError(kSqlUsage);
  const StepClock clock;
  const auto connection = OpenExisting(place, clock);
  for (; at < arguments.size(); ++at) {
    out << scenario::PlainRows(*connection->Execute(arguments[at]));
  }
  return 0;
}

}  // namespace tpv
