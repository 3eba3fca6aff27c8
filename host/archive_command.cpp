#include "host/archive_command.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <ostream>

#include "adapters/files/private_files.h"
#include "base/number_text.h"
#include "base/text.h"
#include "host/archive/archive_order.h"
#include "host/chosen_store.h"
#include "host/machine.h"
#include "host/percentage.h"
#include "host/play.h"

namespace tpv {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kOfServers =
    "store archive: los años de un servidor los archiva su administrador (docs/sql-server.md)";
constexpr const char* kUsage = "store archive --before AÑO [FICHERO] [ARCHIVO] [--no-shrink]";

int TakeYear(Arguments& arguments) {
  const auto at = std::find(arguments.begin(), arguments.end(), "--before");
  if (at == arguments.end() || at + 1 == arguments.end()) throw UsageError(kUsage);
  const auto year = ParseInt32(*(at + 1));
  if (!year || (at + 1)->size() != 4) throw UsageError("--before: se espera un año, como 2020");
  arguments.erase(at, at + 2);
  return *year;
}

std::string InSeconds(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", seconds);
  return ReplaceAll(text, ".", ",");
}

std::string InMegabytes(std::int64_t bytes) {
  constexpr std::int64_t kTenth = 100'000;
  const std::int64_t tenths = bytes / kTenth;
  return std::to_string(tenths / 10) + "," + std::to_string(tenths % 10) + " MB";
}

void Tell(const ArchiveOrder& order, const ArchiveResult& result, std::ostream& out) {
  const std::string last = std::to_string(order.year - 1);
  out << (result.continued ? "Se ha continuado con el archivo que ya estaba: " : "Archivo hecho y comprobado: ")
      << order.archive;
  if (!result.continued) out << " (" << InSeconds(result.making) << ")";
  out << "\nTickets hasta " << last << " que ya no están en la tienda: " << result.removed << " ("
      << InSeconds(result.removing) << ")\n";
  if (result.staying > 0) {
    out << "Tickets de esos años que siguen en la tienda, porque no están saldados: " << result.staying << "\n";
  }
  if (!result.not_shrunk.empty()) {
    out << "El fichero no se ha reducido (lo llenarán las ventas nuevas): " << result.not_shrunk << "\n";
  } else if (order.shrink) {
    out << "La tienda ocupa " << InMegabytes(result.bytes_after) << " en vez de " << InMegabytes(result.bytes_before)
        << " (" << InSeconds(result.shrinking) << ")\n";
  }
  out << "Deudas, cajas, cierres, números, existencias y registros: como antes. La tienda está bien\n";
}

}  // namespace

int ArchiveCommand(const Machine& machine, Arguments arguments, std::ostream& out) {
  ArchiveOrder order;
  order.year = TakeYear(arguments);
  order.shrink = std::erase(arguments, "--no-shrink") == 0;
  if (std::find(arguments.begin(), arguments.end(), "--odbc") != arguments.end()) throw UsageError(kOfServers);
  if (arguments.size() > 2 ||
      std::any_of(arguments.begin(), arguments.end(), [](const auto& word) { return word.starts_with("-"); })) {
    throw UsageError(kUsage);
  }
  order.store = arguments.empty() ? RememberedStore(machine.settings) : arguments[0];
  if (IsServerStore(order.store)) throw UsageError(kOfServers);
  if (!std::filesystem::exists(order.store)) throw FileError("No existe el almacén «" + order.store + "»");
  order.archive = arguments.size() == 2 ? arguments[1] : ArchiveName(order.store, order.year);
  const Percentage percentage;
  const ArchiveResult result = ArchiveYears(order, machine.clock);
  if (!result.nothing) {
    Tell(order, result, out);
  } else if (result.staying > 0) {
    out << "No hay nada que archivar antes de " << order.year << ": los " << result.staying
        << " tickets de esos años no están saldados\n";
  } else {
    out << "No hay nada que archivar antes de " << order.year << "\n";
  }
  return 0;
}

}  // namespace tpv
