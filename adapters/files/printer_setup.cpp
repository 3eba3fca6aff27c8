#include "adapters/files/printer_setup.h"

#include <algorithm>
#include <chrono>

#include "adapters/files/channel.h"
#include "adapters/files/file_settings.h"
#include "adapters/files/program.h"
#include "adapters/files/setting_names.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr std::chrono::seconds kPatience{3};

bool Has(const std::vector<PrinterSetup>& printers, std::string_view name) {
  return std::any_of(printers.begin(), printers.end(),
                     [&](const PrinterSetup& printer) { return printer.name == name; });
}

void MoveToFront(std::vector<PrinterSetup>& printers, std::string_view name) {
  const auto found =
      std::find_if(printers.begin(), printers.end(),
                   [&](const PrinterSetup& printer) { return EqualNoCase(printer.name, name); });
  if (found != printers.end()) std::rotate(printers.begin(), found, found + 1);
}

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
  if (!EqualNoCase(kind, "page")) return std::nullopt;
  setup.mode = PrinterMode::Page;
  if (target.empty()) setup.target = name;
  return setup;
}

SystemQueues FindSystemQueues() {
  SystemQueues queues;
  const ProgramResult list = RunProgram({"lpstat", "-e"}, {}, kPatience);
  if (!list.done) return queues;
  for (const std::string& line : Split(list.output, "\n")) {
    if (!line.empty()) queues.names.push_back(line);
  }
  // "system default destination: Barra"
  const ProgramResult usual = RunProgram({"lpstat", "-d"}, {}, kPatience);
  const std::size_t colon = usual.output.find(": ");
  if (usual.done && colon != std::string::npos) {
    queues.usual = ReplaceAll(usual.output.substr(colon + 2), "\n", "");
  }
  return queues;
}

std::vector<PrinterSetup> FindPrinters(const FileSettings& settings, const SystemQueues& queues) {
  std::vector<PrinterSetup> printers = Configured(settings);
  const bool any_configured = !printers.empty();
  for (const std::string& queue : queues.names) {
    if (!Has(printers, queue)) printers.push_back({queue, PrinterMode::Page, queue});
  }
  if (!any_configured) MoveToFront(printers, queues.usual);
  if (!Has(printers, kFolderPrinter)) printers.push_back({std::string(kFolderPrinter), {}, ""});
  MoveToFront(printers, settings.Read(kTpv, kPaper, kDefaultPrinter));
  return printers;
}

}  // namespace tpv
