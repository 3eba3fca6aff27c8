#include "adapters/files/pdf_reports.h"

#include <cstdlib>

#include "adapters/files/pdf/pdf.h"
#include "adapters/files/program.h"
#include "adapters/files/setting_names.h"

namespace tpv {

namespace {

bool HasDisplay() {
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* display = std::getenv(variable);
    if (display != nullptr && *display != '\0') return true;
  }
  return false;
}

}  // namespace

void PdfReports::Print(const Report& report, std::string_view printer) {
  printers_.PrintSheets(printer, report.title, ReportPdf(report));
}

std::string PdfReports::Show(const Report& report, std::string_view name) {
  const std::string pdf = ReportPdf(report);
  const DocumentFolder folder(PaperFolder(settings_, kReportFolder), clock_);
  std::string path = folder.Save(name, {{".pdf", pdf}});
  if (HasDisplay()) LaunchProgram({"xdg-open", path});
  return path;
}

}  // namespace tpv
