#include "adapters/files/pdf_reports.h"

#include "adapters/files/display.h"
#include "adapters/files/pdf/pdf.h"
#include "adapters/files/program.h"
#include "adapters/files/setting_names.h"

namespace tpv {

namespace {

constexpr const char* kViewer = "(visor)";       // a line of work; no printer's name
constexpr std::chrono::milliseconds kLook{2000};  // a viewer that fails does so at once

}  // namespace

void PdfReports::Print(const Report& report, std::string_view printer) {
  printers_.PrintSheets(printer, report.title, ReportPdf(report, codes_));
}

std::string PdfReports::Show(const Report& report, std::string_view name) {
  return Show(ReportPdf(report, codes_), name, report.title);
}

std::string PdfReports::Show(const std::vector<Label>& labels, const LabelSheet& sheet, std::string_view name) {
  return Show(LabelPdf(labels, sheet), name, std::string(name));
}

std::string PdfReports::Show(const std::string& pdf, std::string_view name, const std::string& title) {
  const DocumentFolder folder(PaperFolder(settings_, kReportFolder), clock_);
  std::string path = folder.Save(name, {{".pdf", pdf}});
  lines_.Add(kViewer, [this, path, title](const Deadline&) {
    if (HasDisplay() && LaunchProgram({"xdg-open", path}, kLook)) return;
    if (printers_.news.failed) {
      printers_.news.failed({"«" + title + "» no se puede mostrar. Está en " + path + ".", {}});
    }
  });
  return path;
}

}  // namespace tpv
