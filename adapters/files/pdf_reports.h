// Reports as A4 PDF files: shown in the desktop's viewer, or printed.
#pragma once

#include "adapters/files/shop_printers.h"
#include "platform/report.h"

namespace tpv {

class PdfReports : public ReportPress {
 public:
  // All outlive the press.
  PdfReports(const Settings& settings, const Clock& clock, ShopPrinters& printers,
             WorkLines& lines, const CodeEncoder& codes)
      : settings_(settings), clock_(clock), printers_(printers), lines_(lines), codes_(codes) {}

  void Print(const Report& report, std::string_view printer) override;
  std::string Show(const Report& report, std::string_view name) override;

 private:
  const Settings& settings_;
  const Clock& clock_;
  ShopPrinters& printers_;
  WorkLines& lines_;
  const CodeEncoder& codes_;
};

}  // namespace tpv
