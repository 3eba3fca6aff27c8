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
  const std::string pdf = ReportPdf(report, codes_);
  const DocumentFolder folder(PaperFolder(settings_, kReportFolder), clock_);
  std::string path = folder.Save(name, {{".pdf", pdf}});
  lines_.Add(kViewer, [this, path, title = report.title](const Deadline&) {
    if (HasDisplay() && LaunchProgram({"xdg-open", path}, kLook)) return;
    if (printers_.news.failed) {
      printers_.news.failed({"«" + title + "» no se puede mostrar. Está en " + path + ".", {}});
    }
  });
  return path;
}

}  // namespace tpv
