#include "adapters/files/shop_printers.h"

#include <algorithm>

#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "base/text.h"

namespace tpv {

std::optional<PrinterSetup> ShopPrinters::Settled(std::string_view name) const {
  try {
    return SettledPrinter(settings_, name);
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

std::optional<PrinterSetup> ShopPrinters::Understood(std::string_view name) const {
  auto printer = Settled(name);
  if (printer) RequireUnderstood(*printer);
  return printer;
}

std::vector<PrinterSetup> ShopPrinters::List(const QueueWatch::View& view) const {
  try {
    SystemQueues queues = view.queues;
    const std::string chosen_once = Trim(settings_.Read("OKRA", "Printer", "Spool"));
    const auto known = std::find(queues.names.begin(), queues.names.end(), chosen_once);
    const bool remember = !view.trouble.empty() && known == queues.names.end();
    if (remember && !chosen_once.empty()) queues.names.push_back(chosen_once);
    return FindPrinters(settings_, queues);
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

std::vector<std::string> ShopPrinters::Installed() const {
  const QueueWatch::View view = watch_.Look();
  if (view.trouble.empty()) {
    told_ = false;
  } else if (!std::exchange(told_, true) && news.failed) {
    news.failed({view.trouble + ". Pueden faltar impresoras en la lista.", view.detail});
  }
  std::vector<std::string> names;
  for (const PrinterSetup& printer : List(view)) names.push_back(printer.name);
  return names;
}

std::string ShopPrinters::Current() const {
  if (!chosen_.empty()) return chosen_;
  try {
    if (const auto printer = Settled("")) return printer->name;
    const QueueWatch::View view = watch_.Look();
    return view.answered ? List(view).front().name : std::string();
  } catch (const PrintError&) {
    return "";
  }
}

void ShopPrinters::SetCurrent(std::string_view name) {
  if (name.empty() || Settled(name)) {
    // The default stays what the settings say when they change.
    const auto usual = Settled("");
    chosen_ = usual && usual->name == name ? std::string() : std::string(name);
    return;
  }
  const QueueWatch::View view = watch_.Look();
  const auto& names = view.queues.names;
  const bool listed = std::find(names.begin(), names.end(), name) != names.end();
  // Whether there is one that nobody can be asked about shows when it is to print.
  if (!listed && view.trouble.empty()) {
    throw PrintError("No existe la impresora «" + std::string(name) + "»");
  }
  chosen_ = name;
}

std::unique_ptr<PrintDocument> ShopPrinters::Begin(std::string_view title) {
  return std::make_unique<PageRecorder>(
      codes_, [this, printer = chosen_, title = std::string(title)](const TicketPage& page) {
        Deliver(printer, {title, page});
      });
}

std::unique_ptr<PrintDocument> ShopPrinters::BeginTrial(std::string_view title) {
  return std::make_unique<PageRecorder>(
      codes_, [this, printer = chosen_, title = std::string(title)](const TicketPage& page) {
        HandOver(printer, {title, page}, nullptr);
      });
}

void ShopPrinters::SendRaw(std::string_view bytes) { Deliver(chosen_, {{}, RawBytes{std::string(bytes)}}); }

void ShopPrinters::PrintSheets(std::string_view name, std::string_view title,
                               const std::string& pdf) {
  Deliver(std::string(name.empty() ? std::string_view(chosen_) : name), {std::string(title), SheetsPdf{pdf}});
}

void ShopPrinters::Deliver(const std::string& printer, PaperDocument document) {
  ShopOutbox::Held held = outbox_.Keep(printer, document);
  HandOver(printer, std::move(document), std::move(held));
}

// Known at once where the settings alone say so.
void ShopPrinters::RequireFit(const std::string& printer, const PaperDocument& document) const {
  const auto known = Understood(printer);
  const bool sheets = std::holds_alternative<SheetsPdf>(document.content);
  if (known && sheets && known->mode == PrinterMode::Receipt) throw PrintError(NeedsSheets(known->name));
}

void ShopPrinters::HandOver(const std::string& printer, PaperDocument document, ShopOutbox::Held held) {
  try {
    RequireFit(printer, document);
  } catch (const PrintError& error) {
    if (held) held->Failed(printer, error.what(), false);
    throw;
  }
  const auto known = Settled(printer);
  lines_.Add(known ? LineOf(known->target) : printer,
             [this, printer, document = std::move(document), held = std::move(held)](const Deadline& deadline) {
               delivery_.Deliver(printer, document, held.get(), deadline);
             });
}

}  // namespace tpv
