// The printers of the till: those of the settings and of the system, and a
// folder where there is none.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "adapters/files/document_folder.h"
#include "adapters/files/printer_setup.h"
#include "adapters/files/ticket_page.h"

namespace tpv {

class ShopPrinters : public Printers {
 public:
  // Both outlive the printers.
  ShopPrinters(const FileSettings& settings, const Clock& clock)
      : settings_(settings), clock_(clock) {}

  // Told once, with the folder's path, when the first document has gone into a
  // folder instead of onto paper: the operator wants to know where tickets are.
  std::function<void(const std::string& folder)> on_folder;

  std::vector<std::string> Installed() const override;
  // "" when the settings cannot be read; printing then says why.
  std::string Current() const override;
  void SetCurrent(std::string_view name) override;
  std::unique_ptr<PrintDocument> Begin() override;
  // The folder printer keeps the bytes in a file ending in ".raw".
  void SendRaw(std::string_view bytes) override;

  // An A4 document on the printer so named, on the current one when "". Throws
  // PrintError, also for a receipt printer.
  void PrintSheets(std::string_view name, std::string_view about, const std::string& pdf);

 private:
  std::vector<PrinterSetup> List() const;
  PrinterSetup Find(std::string_view name) const;  // "" for the default
  PrinterSetup Working(std::string_view name) const;
  void PrintTicket(const PrinterSetup& printer, const TicketPage& page);
  void Save(const PrinterSetup& printer, std::string_view about,
            const std::vector<DocumentFolder::Part>& parts);

  const FileSettings& settings_;
  const Clock& clock_;
  std::string chosen_;
  // Asked for once, and again when the operator looks at the list: a printing
  // service that does not answer must not hold every ticket.
  mutable std::optional<SystemQueues> queues_;
  bool told_ = false;
};

// Where the settings want it, else the usual place. `key` is in setting_names.h.
// Throws PrintError.
std::string PaperFolder(const Settings& settings, std::string_view key);

}  // namespace tpv
