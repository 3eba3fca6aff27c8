#include "host/store_making.h"

#include <ostream>

#include "adapters/files/private_files.h"
#include "adapters/headless/recorders.h"
#include "base/number_text.h"
#include "host/demo/demonstration.h"
#include "host/play.h"
#include "host/server_store.h"
#include "host/store.h"
#include "host/store_place.h"
#include "office/shop_ini.h"

namespace tpv {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kCreateUsage = "store create FICHERO|--odbc CONEXIÓN [--demo|--empty|--shop FICHERO.ini]";

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

int CreateShop(const StorePlace& place, const std::string& shop, std::ostream& out) {
  Require(StoreNewShop(place, ReadShop(shop), StepClock()), "No se ha creado la tienda");
  out << "Tienda creada en " << (place.server ? "el servidor" : place.name) << "\n";
  return 0;
}

}  // namespace

office::Refusals StoreNewShop(const StorePlace& place, const office::ShopSetup& setup, const Clock& clock) {
  if (place.server) {
    MakeServerTables(*OpenServer(place.name));
    return office::StoreShop(*OpenServer(place.name), setup);
  }
  MakeShop(place.name, setup, clock);
  return {};
}

int CreateCommand(const Arguments& arguments, std::ostream& out) {
  std::size_t at = 1;
  const StorePlace place = TakePlace(arguments, at, kCreateUsage);
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

int FillCommand(const Arguments& arguments, std::ostream& out) {
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

}  // namespace tpv
