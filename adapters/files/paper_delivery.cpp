#include "adapters/files/paper_delivery.h"

#include "adapters/files/code_table.h"
#include "adapters/files/escpos.h"
#include "adapters/files/pdf/pdf.h"
#include "adapters/files/private_files.h"
#include "adapters/files/roll_media.h"
#include "adapters/files/setting_names.h"
#include "adapters/files/target.h"
#include "base/text.h"

namespace tpv {

namespace {

using Part = DocumentFolder::Part;

[[noreturn]] void FailSheets(const PrinterSetup& printer) {
  throw PrintError(NeedsSheets(printer.name));
}

std::vector<Part> FilesOf(const PaperDocument& document) {
  if (const auto* ticket = std::get_if<TicketPage>(&document.content)) return TicketFiles(*ticket);
  if (const auto* sheets = std::get_if<SheetsPdf>(&document.content)) return {{".pdf", sheets->bytes}};
  return {{".raw", std::get<RawBytes>(document.content).bytes}};
}

// As the driver says, or as the settings do where it says so wrongly.
QueuePaper PaperIn(const PrinterSetup& printer, const SystemQueue& queue,
                   const Deadline& deadline) {
  if (printer.mode == PrinterMode::Sheets) return {};
  QueuePaper paper = PaperOf(queue, deadline);
  if (printer.mode == PrinterMode::Roll && paper.roll_width == 0) paper.roll_width = 8;
  return paper;
}

void SendPages(const PrinterSetup& printer, const SystemQueue& queue,
               const PaperDocument& document, const Deadline& deadline) {
  const QueuePaper paper = PaperIn(printer, queue, deadline);
  const bool roll = paper.roll_width > 0;
  if (const auto* sheets = std::get_if<SheetsPdf>(&document.content)) {
    if (roll) FailSheets(printer);
    return SendToQueue(queue.name, document.title, {"media=A4"}, sheets->bytes, deadline);
  }
  const TicketPage& page = std::get<TicketPage>(document.content);
  const RollMedia media = roll ? MediaFor(LengthOnRoll(page), paper) : RollMedia{};
  const auto pdf = roll ? TicketPdf(page, media.piece) : TicketSheetsPdf(page, document.title);
  const auto options = roll ? media.options : std::vector<std::string>{"media=A4"};
  SendToQueue(queue.name, document.title, options, pdf ? *pdf : PlainText(page), deadline);
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

void PaperDelivery::Deliver(const std::string& printer, const PaperDocument& document, HeldPaper* held,
                            const Deadline& deadline) const {
  std::string name = printer;
  const auto fail = [&](const std::exception& error, const std::string& detail, bool maybe_printed) {
    if (held != nullptr) held->Failed(name, error.what(), maybe_printed);
    TellFailure(name, document, error.what(), detail, held);
  };
  try {
    const PrinterSetup found = Find(printer, deadline);
    name = found.name;
    const std::string waits = Print(found, document, held, deadline);
    if (held != nullptr) held->Done();
    if (waits.empty() || document.title.empty() || !news_.failed) return;
    news_.failed({"«" + document.title + "» espera en la cola de «" + name +
                      "»: la impresora " + waits + ".", {}});
  } catch (const UnsurePrint& error) {
    fail(error, error.detail(), true);
  } catch (const PrintError& error) {
    fail(error, error.detail(), false);
  } catch (const std::exception& error) {
    fail(error, {}, false);
  }
}

void PaperDelivery::TellFailure(const std::string& printer, const PaperDocument& document,
                                const std::string& why, const std::string& detail, const HeldPaper* held) const {
  if (document.title.empty() || !news_.failed) return;
  std::string text = "«" + document.title + "» no se ha impreso";
  if (!printer.empty()) text += " en «" + printer + "»";
  text += ". " + why + ". ";
  try {
    if (held == nullptr || !held->Again()) text += "Está guardado en " + Keep(document) + ".";
  } catch (const std::exception& error) {
    text += "Tampoco se ha podido guardar. " + std::string(error.what()) + ".";
  }
  if (held != nullptr) text = TrimRight(text) + " Se puede imprimir desde «Sin imprimir» (F8).";
  news_.failed({text, detail});
}

PrinterSetup PaperDelivery::Find(const std::string& name, const Deadline& deadline) const {
  if (auto printer = SettledPrinter(settings_, name)) return *std::move(printer);
  if (!name.empty()) return {name, PrinterMode::Page, name};
  return FindPrinters(settings_, watch_.Await(deadline)).front();
}

std::string PaperDelivery::Print(const PrinterSetup& printer, const PaperDocument& document,
                                 HeldPaper* held, const Deadline& deadline) const {
  if (printer.mode == PrinterMode::Folder) {
    if (held != nullptr) held->Sending();
    const std::string folder = Save(printer, document);
    if (news_.in_folder) news_.in_folder(folder);
    return {};
  }
  RequireUnderstood(printer);
  if (deadline.Passed()) throw PrintError("El programa se ha cerrado antes de imprimirlo");
  if (printer.mode != PrinterMode::Receipt) return PrintPages(printer, document, held, deadline);
  const std::string bytes = BytesFor(printer, document);
  if (held != nullptr) held->Sending();
  return SendToTarget(printer.target, document.title, bytes, deadline);
}

std::string PaperDelivery::BytesFor(const PrinterSetup& printer,
                                    const PaperDocument& document) const {
  if (const auto* raw = std::get_if<RawBytes>(&document.content)) return raw->bytes;
  const auto* page = std::get_if<TicketPage>(&document.content);
  if (page == nullptr) FailSheets(printer);
  const std::string setting = settings_.Read(kTpv, kCodeTable, printer.name);
  const auto table = setting.empty() ? UsualCodeTable() : ParseCodeTable(setting);
  if (!table) throw PrintError("No se entiende la tabla de letras «" + setting + "»");
  const std::string way = settings_.Read(kTpv, kSquareCode, printer.name);
  const auto codes = way.empty() ? CodePrinting{} : ParseCodePrinting(way);
  if (!codes) throw PrintError("No se entiende cómo se imprimen los códigos QR: «" + way + "»");
  return ReceiptBytes(*page, *table, *codes);
}

std::string PaperDelivery::PrintPages(const PrinterSetup& printer, const PaperDocument& document,
                                      HeldPaper* held, const Deadline& deadline) const {
  const SystemQueue queue = AwaitQueue(printer.target, deadline);
  RefuseToWait(queue, document.title);
  if (held != nullptr) held->Sending();
  if (queue.raw || std::holds_alternative<RawBytes>(document.content)) {
    SendToQueue(queue.name, document.title, {"raw"}, BytesFor(printer, document), deadline);
  } else {
    SendPages(printer, queue, document, deadline);
  }
  return queue.trouble;
}

std::string PaperDelivery::Save(const PrinterSetup& printer, const PaperDocument& document) const {
  const DocumentFolder folder(
      printer.target.empty() ? PaperFolder(settings_, kTicketFolder) : ExpandHome(printer.target),
      clock_);
  const bool raw = std::holds_alternative<RawBytes>(document.content);
  const bool untitled = document.title.empty() || std::holds_alternative<TicketPage>(document.content);
  folder.Save(raw ? printer.name + " bytes" : untitled ? printer.name : document.title,
              FilesOf(document));
  return folder.path();
}

std::string PaperDelivery::Keep(const PaperDocument& document) const {
  const bool sheets = std::holds_alternative<SheetsPdf>(document.content);
  const DocumentFolder folder(PaperFolder(settings_, sheets ? kReportFolder : kTicketFolder), clock_);
  return folder.Save(document.title, FilesOf(document));
}

}  // namespace tpv
