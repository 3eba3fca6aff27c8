#include "adapters/files/shop_printers.h"

#include <utility>

#include "adapters/files/channel.h"
#include "adapters/files/escpos.h"
#include "adapters/files/file_settings.h"
#include "adapters/files/pdf/pdf.h"
#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"

namespace tpv {

namespace {

void PrintPage(const PrinterSetup& printer, const TicketPage& page) {
  const auto pdf = TicketPdf(page);
  SendToQueue(printer.target, {"print-scaling=none"}, pdf ? *pdf : PlainText(page));
}

}  // namespace

std::string PaperFolder(const Settings& settings, std::string_view key) {
  try {
    const std::string folder = settings.Read(kTpv, kPaper, key);
    if (!folder.empty()) return ExpandHome(folder);
    return DataFolder() + (key == kTicketFolder ? "/tickets" : "/informes");
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

std::vector<PrinterSetup> ShopPrinters::List() const {
  try {
    if (!queues_) queues_ = FindSystemQueues();
    return FindPrinters(settings_, *queues_);
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

PrinterSetup ShopPrinters::Find(std::string_view name) const {
  std::vector<PrinterSetup> printers = List();
  if (name.empty()) return printers.front();
  for (PrinterSetup& printer : printers) {
    if (printer.name == name) return std::move(printer);
  }
  throw PrintError("No existe la impresora «" + std::string(name) + "»");
}

std::vector<std::string> ShopPrinters::Installed() const {
  queues_.reset();
  std::vector<std::string> names;
  for (const PrinterSetup& printer : List()) names.push_back(printer.name);
  return names;
}

PrinterSetup ShopPrinters::Working(std::string_view name) const {
  PrinterSetup printer = Find(name);
  if (printer.mode != PrinterMode::Unknown) return printer;
  throw PrintError("Impresora «" + printer.name + "»: no se entiende el modo «" + printer.target +
                   "»");
}

std::string ShopPrinters::Current() const {
  try {
    return chosen_.empty() ? Find("").name : chosen_;
  } catch (const PrintError&) {
    return "";
  }
}

void ShopPrinters::SetCurrent(std::string_view name) { chosen_ = Find(name).name; }

std::unique_ptr<PrintDocument> ShopPrinters::Begin() {
  return std::make_unique<PageRecorder>(
      [this, printer = Working(chosen_)](const TicketPage& page) { PrintTicket(printer, page); });
}

void ShopPrinters::PrintTicket(const PrinterSetup& printer, const TicketPage& page) {
  if (printer.mode == PrinterMode::Receipt) return SendBytes(printer.target, ReceiptBytes(page));
  if (printer.mode == PrinterMode::Page) return PrintPage(printer, page);
  Save(printer, printer.name, TicketFiles(page));
}

void ShopPrinters::Save(const PrinterSetup& printer, std::string_view about,
                        const std::vector<DocumentFolder::Part>& parts) {
  const DocumentFolder folder(
      printer.target.empty() ? PaperFolder(settings_, kTicketFolder) : ExpandHome(printer.target),
      clock_);
  folder.Save(about, parts);
  if (on_folder && !std::exchange(told_, true)) on_folder(folder.path());
}

void ShopPrinters::SendRaw(std::string_view bytes) {
  const PrinterSetup printer = Working(chosen_);
  switch (printer.mode) {
    case PrinterMode::Receipt:
      return SendBytes(printer.target, bytes);
    case PrinterMode::Page:
      return SendToQueue(printer.target, {"raw"}, bytes);
    default:
      return Save(printer, printer.name + " bytes", {{".raw", std::string(bytes)}});
  }
}

void ShopPrinters::PrintSheets(std::string_view name, std::string_view about,
                               const std::string& pdf) {
  const PrinterSetup printer = Working(name.empty() ? chosen_ : name);
  switch (printer.mode) {
    case PrinterMode::Page:
      return SendToQueue(printer.target, {"media=A4"}, pdf);
    case PrinterMode::Receipt:
      throw PrintError("La impresora «" + printer.name + "» es de tickets: no imprime hojas");
    default:
      return Save(printer, about, {{".pdf", pdf}});
  }
}

}  // namespace tpv
