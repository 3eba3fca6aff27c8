#include "host/table_commands.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <map>

#include "base/text.h"
#include "data/archived.h"
#include "host/chosen_store.h"
#include "host/day_option.h"
#include "host/machine.h"
#include "host/percentage.h"
#include "host/play.h"
#include "office/export.h"
#include "office/import/import.h"
#include "platform/clock.h"
#include "platform/table_file.h"

namespace tpv {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kImportUsage =
    "import articles|customers|stock FICHERO [--store FICHERO|--odbc CONEXIÓN] [--dry-run|--yes]";
constexpr const char* kExportUsage =
    "export articles|customers|stock|tickets|lines|payments|invoices|closures FICHERO "
    "[--from dd/mm/aaaa] [--to dd/mm/aaaa] [--store FICHERO|--odbc CONEXIÓN]";
constexpr std::size_t kLinesShown = 20;

bool TakeFlag(Arguments& arguments, const char* flag) { return std::erase(arguments, flag) > 0; }

template <typename Kind>
Kind KindOf(const Arguments& arguments, const std::map<std::string, Kind>& kinds,
            const char* usage) {
  const auto kind = arguments.size() == 2 ? kinds.find(arguments[0]) : kinds.end();
  if (kind == kinds.end()) throw UsageError(usage);
  return kind->second;
}

void Show(const office::ImportReport& report, std::ostream& out) {
  out << "Nuevos: " << report.added << ", cambiados: " << report.changed
      << ", iguales: " << report.same << ", rechazados: " << report.refused << "\n";
  std::size_t shown = 0;
  for (const office::ImportLine& line : report.lines) {
    if (report.refused > 0 || ++shown > kLinesShown) break;
    out << "  Línea " << line.line << ": " << OneLine(line.key)
        << (line.added ? ", nuevo" : ", cambia ") << (line.added ? "" : line.changes) << "\n";
  }
  for (const office::Refusal& refusal : report.refusals) {
    out << "  " << OneLine(office::RefusalText(refusal)) << "\n";
  }
  if (static_cast<std::size_t>(report.refused) > report.refusals.size()) out << "  …\n";
}

bool Agrees(std::istream& in, std::ostream& out) {
  if (::isatty(STDIN_FILENO) != 1)
    throw UsageError("import: sin terminal hace falta --yes o --dry-run");
  out << "¿Importarlo? (s/n) " << std::flush;
  std::string answer;
  std::getline(in, answer);
  return FoldForSearch(Trim(answer)).starts_with('s');
}

}  // namespace

int ImportCommand(Machine& machine, Arguments arguments, std::istream& in, std::ostream& out) {
  using enum office::ImportKind;
  const bool only_look = TakeFlag(arguments, "--dry-run");
  const bool agreed = TakeFlag(arguments, "--yes");
  const std::string store = TakeChosenStore(machine.settings, arguments);
  const auto kind = KindOf<office::ImportKind>(
      arguments, {{"articles", Articles}, {"customers", Customers}, {"stock", Stock}},
      kImportUsage);
  const office::ImportOrder order{kind, arguments[1]};
  const auto connection = OpenChosenStore(store, machine.clock);
  const Percentage percentage;
  office::ImportReport report = office::PreviewImport(*connection, *machine.tables, order);
  Show(report, out);
  if (report.refused > 0) {
    out << "No se ha importado nada\n";
    return 1;
  }
  if (report.added + report.changed == 0 || only_look) return 0;
  if (!agreed && !Agrees(in, out)) return 0;
  report = office::StoreImport(*connection, *machine.tables, order);
  if (!report.stored) Show(report, out);
  out << (report.stored ? "Importado\n" : "No se ha importado nada\n");
  return report.stored ? 0 : 1;
}

int ExportCommand(Machine& machine, Arguments arguments, std::ostream& out) {
  using enum office::ExportKind;
  office::ExportOrder order;
  order.from = TakeDayOption(arguments, "--from");
  order.to = TakeDayOption(arguments, "--to");
  const std::string store = TakeChosenStore(machine.settings, arguments);
  order.kind = KindOf<office::ExportKind>(arguments,
                                          {{"articles", Articles},
                                           {"customers", Customers},
                                           {"stock", Stock},
                                           {"tickets", Tickets},
                                           {"lines", Lines},
                                           {"payments", Payments},
                                           {"invoices", Invoices},
                                           {"closures", Closures}},
                                          kExportUsage);
  if (!office::IsDated(order.kind) && (order.from || order.to)) {
    throw UsageError(arguments[0] + " no tiene fechas: sobran --from y --to");
  }
  order.path = arguments[1];
  const auto connection = OpenChosenStore(store, machine.clock);
  const long rows = office::ExportTable(*connection, *machine.tables, order);
  out << "Exportado: " << rows << " filas en " << order.path << "\n";
  if (!office::IsDated(order.kind)) return 0;
  const std::string archived = ArchivedSince(*connection, order.from, machine.clock.Now());
  if (!archived.empty()) out << archived << "\n";
  return 0;
}

}  // namespace tpv
