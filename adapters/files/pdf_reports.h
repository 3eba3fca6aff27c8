// Reports and labels as A4 PDF files: shown in the desktop's viewer, or printed.
#pragma once

#include "adapters/files/shop_printers.h"
#include "platform/label_press.h"
#include "platform/report.h"

namespace tpv {

class PdfReports : public ReportPress, public LabelPress {
 public:
  // All outlive the press.
  PdfReports(const Settings& settings, const Clock& clock, ShopPrinters& printers,
             WorkLines& lines, const CodeEncoder& codes)
      : settings_(settings), clock_(clock), printers_(printers), lines_(lines), codes_(codes) {}

  void Print(const Report& report, std::string_view printer) override;
  std::string Show(const Report& report, std::string_view name) override;
  std::string Show(const std::vector<Label>& labels, const LabelSheet& sheet, std::string_view name) override;

 private:
  std::string Show(const std::string& pdf, std::string_view name, const std::string& title);

  const Settings& settings_;
  const Clock& clock_;
  ShopPrinters& printers_;
  WorkLines& lines_;
  const CodeEncoder& codes_;
};

}  // namespace tpv
