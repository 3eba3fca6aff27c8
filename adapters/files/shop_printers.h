// The printers of the till: those of the settings and of the system, and a
// folder where there is none.
#pragma once

#include <string>
#include <vector>

#include "adapters/files/paper_delivery.h"
#include "adapters/files/queue_watch.h"
#include "adapters/files/shop_outbox.h"
#include "adapters/files/work_lines.h"

namespace tpv {

// Hands everything over to the printer's line of work and goes on.
class ShopPrinters : public Printers {
 public:
  // All outlive the printers; the lines are finished before the printers go.
  ShopPrinters(const FileSettings& settings, const Clock& clock, WorkLines& lines,
               const CodeEncoder& codes)
      : settings_(settings),
        lines_(lines),
        codes_(codes),
        watch_(lines),
        delivery_(settings, clock, watch_, news),
        outbox_(clock, codes, [this](const std::string& printer, PaperDocument document, ShopOutbox::Held held) {
          HandOver(printer, std::move(document), std::move(held));
        }) {}

  // Set before the first document.
  PaperNews news;

  // While the printing system does not answer: what it named before, and the printer that
  // the operator chose once; `news` hears of it.
  std::vector<std::string> Installed() const override;
  // Begins to look for the printing system, so that the first ticket knows whether it is there.
  void LookAhead() const { watch_.Begin(); }
  // "" also when the settings cannot be read; printing then says why.
  std::string Current() const override;
  // "" for the default again.
  void SetCurrent(std::string_view name) override;
  std::unique_ptr<PrintDocument> Begin(std::string_view title) override;
  std::unique_ptr<PrintDocument> BeginTrial(std::string_view title) override;
  // The folder printer keeps the bytes in a file ending in ".raw".
  void SendRaw(std::string_view bytes) override;
  PrintOutbox* Outbox() override { return &outbox_; }

  // An A4 document on the printer so named, on the current one when "". Throws
  // PrintError for a receipt printer.
  void PrintSheets(std::string_view name, std::string_view title, const std::string& pdf);

 private:
  std::optional<PrinterSetup> Settled(std::string_view name) const;
  std::optional<PrinterSetup> Understood(std::string_view name) const;
  std::vector<PrinterSetup> List(const QueueWatch::View& view) const;
  void Deliver(const std::string& printer, PaperDocument document);  // which the outbox keeps
  void HandOver(const std::string& printer, PaperDocument document, ShopOutbox::Held held);
  void RequireFit(const std::string& printer, const PaperDocument& document) const;

  const FileSettings& settings_;
  WorkLines& lines_;
  const CodeEncoder& codes_;
  mutable QueueWatch watch_;
  PaperDelivery delivery_;
  ShopOutbox outbox_;
  std::string chosen_;
  mutable bool told_ = false;  // that nobody answers
};

}  // namespace tpv
