// How a screen's lists leave it.
#include "platform/clock.h"
#include "platform/printer.h"
#include "platform/report.h"
#include "platform/table_file.h"
#include "screen/export_dialog.h"
#include "screen/list_document.h"
#include "screen/screen.h"

namespace tpv {

namespace {

// As a file is called: "Diario de cierres 24-11-2026".
std::string FileNameFor(const ui::List& list, const DateTime& now) {
  std::string name;
  for (const char c : TitleOf(list)) name += std::string_view("/\\:*?\"<>|").find(c) == std::string_view::npos ? c : ' ';
  std::string day = ToDayFirst(now);
  for (char& c : day) c = c == '/' ? '-' : c;
  return name + " " + day;
}

}  // namespace

void Screen::ExportList(ui::List& list, const std::string& path) {
  TableFiles* const tables = context_.ports.tables;
  if (tables == nullptr) return Message("Este programa no escribe ficheros CSV", ui::Icon::Exclamation);
  if (path.empty()) {
    FrmExportar dialog(context_, *tables, FileNameFor(list, context_.ports.clock.Now()) + ".csv");
    context_.ports.ui.ShowModal(dialog);
    if (!dialog.chosen.empty()) ExportList(list, dialog.chosen);
    return;
  }
  try {
    const std::string whole = tables->PathOf(path);
    const auto file = tables->Create(whole);
    for (const auto& row : TableOf(list)) file->Write(row);
    file->Finish();
    Message("La lista está en " + whole, ui::Icon::Information);
  } catch (const std::exception& error) {
    Message(std::string("No se ha exportado la lista. ") + error.what(), ui::Icon::Critical);
  }
}

void Screen::PrintList(ui::List& list, ui::ListPaper paper) {
  const DateTime now = context_.ports.clock.Now();
  try {
    const Report report = ReportOf(list, now);
    if (paper == ui::ListPaper::Printer) return context_.ports.reports.Print(report, "");
    context_.ports.reports.Show(report, FileNameFor(list, now));
  } catch (const std::exception& error) {
    Message(std::string("No se ha impreso la lista. ") + error.what(), ui::Icon::Critical);
  }
}

}  // namespace tpv
