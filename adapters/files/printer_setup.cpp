#include "adapters/files/printer_setup.h"

#include <algorithm>

#include "adapters/files/channel.h"
#include "adapters/files/file_settings.h"
#include "adapters/files/setting_names.h"
#include "adapters/files/system_queues.h"
#include "base/text.h"
#include "platform/printer.h"

namespace tpv {

namespace {

using Setups = std::vector<PrinterSetup>;

Setups::const_iterator Named(const Setups& printers, std::string_view name) {
  return std::find_if(printers.begin(), printers.end(),
                      [&](const PrinterSetup& printer) { return printer.name == name; });
}

bool Has(const Setups& printers, std::string_view name) {
  return Named(printers, name) != printers.end();
}

void MoveToFront(std::vector<PrinterSetup>& printers, std::string_view name) {
  const auto found =
      std::find_if(printers.begin(), printers.end(),
                   [&](const PrinterSetup& printer) { return EqualNoCase(printer.name, name); });
  if (found != printers.end()) std::rotate(printers.begin(), found, found + 1);
}

PrinterSetup FolderPrinter() { return {std::string(kFolderPrinter), PrinterMode::Folder, ""}; }

std::vector<PrinterSetup> Configured(const FileSettings& settings) {
  std::vector<PrinterSetup> printers;
  for (const std::string& name : settings.Keys(kTpv, kPrinters)) {
    const std::string mode = settings.Read(kTpv, kPrinters, name);
    printers.push_back(
        ParsePrinterMode(name, mode).value_or(PrinterSetup{name, PrinterMode::Unknown, mode}));
  }
  return printers;
}

}  // namespace

std::optional<PrinterSetup> ParsePrinterMode(std::string_view name, std::string_view mode) {
  const std::size_t colon = std::min(mode.find(':'), mode.size());
  const std::string_view kind = mode.substr(0, colon);
  std::string target(mode.substr(std::min(colon + 1, mode.size())));
  PrinterSetup setup{std::string(name), PrinterMode::Folder, target};
  if (EqualNoCase(kind, "folder")) {
    const bool path = target.empty() || target.starts_with('/') || target.starts_with("~/");
    return path ? std::optional(setup) : std::nullopt;
  }
  if (EqualNoCase(kind, "escpos")) {
    setup.mode = PrinterMode::Receipt;
    return IsTarget(target) ? std::optional(setup) : std::nullopt;
  }
  const auto mode_of = [&] {
    if (EqualNoCase(kind, "page")) return PrinterMode::Page;
    if (EqualNoCase(kind, "roll")) return PrinterMode::Roll;
    return EqualNoCase(kind, "sheets") ? PrinterMode::Sheets : PrinterMode::Unknown;
  };
  setup.mode = mode_of();
  if (setup.mode == PrinterMode::Unknown) return std::nullopt;
  if (target.empty()) setup.target = name;
  return setup;
}

std::optional<PrinterSetup> SettledPrinter(const FileSettings& settings, std::string_view name) {
  Setups printers = Configured(settings);
  const bool any_configured = !printers.empty();
  if (!Has(printers, kFolderPrinter)) printers.push_back(FolderPrinter());
  if (!name.empty()) {
    const auto found = Named(printers, name);
    return found == printers.end() ? std::nullopt : std::optional(*found);
  }
  const std::string usual = settings.Read(kTpv, kPaper, kDefaultPrinter);
  MoveToFront(printers, usual);
  const bool settled = usual.empty() ? any_configured : EqualNoCase(printers.front().name, usual);
  return settled ? std::optional(printers.front()) : std::nullopt;
}

std::vector<PrinterSetup> FindPrinters(const FileSettings& settings, const SystemQueues& queues) {
  std::vector<PrinterSetup> printers = Configured(settings);
  const bool any_configured = !printers.empty();
  for (const std::string& queue : queues.names) {
    if (!Has(printers, queue)) printers.push_back({queue, PrinterMode::Page, queue});
  }
  if (!any_configured) MoveToFront(printers, queues.usual);
  if (!Has(printers, kFolderPrinter)) printers.push_back(FolderPrinter());
  MoveToFront(printers, settings.Read(kTpv, kPaper, kDefaultPrinter));
  return printers;
}

void RequireUnderstood(const PrinterSetup& printer) {
  if (printer.mode != PrinterMode::Unknown) return;
  throw PrintError("Impresora «" + printer.name + "»: no se entiende el modo «" + printer.target +
                   "»");
}

std::string NeedsSheets(const std::string& printer) {
  return "Hace falta una impresora de hojas A4: «" + printer + "» es de tickets";
}

std::string LineOf(const std::string& target) {
  const std::string queue = QueueOf(target);
  return queue.empty() ? target : queue;
}

}  // namespace tpv
