#include "screen/list_exits.h"

#include "context/context.h"
#include "platform/clock.h"
#include "platform/printer.h"
#include "platform/report.h"
#include "platform/table_file.h"
#include "screen/export_dialog.h"
#include "screen/list_document.h"

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

void Tell(const Context& context, const std::string& text, ui::Icon icon) {
  ui::MessageBox box;
  box.text = text;
  box.icon = icon;
  context.ports.ui.Show(box);
}

}  // namespace

void ExportList(Context& context, ui::List& list, const std::string& path) {
  TableFiles* const tables = context.ports.tables;
  if (tables == nullptr) return Tell(context, "Este programa no escribe ficheros CSV", ui::Icon::Exclamation);
  if (path.empty()) {
    FrmExportar dialog(context, *tables, FileNameFor(list, context.ports.clock.Now()) + ".csv");
    context.ports.ui.ShowModal(dialog);
    if (!dialog.chosen.empty()) ExportList(context, list, dialog.chosen);
    return;
  }
  try {
    const std::string whole = tables->PathOf(path);
    const auto file = tables->Create(whole);
    for (const auto& row : TableOf(list)) file->Write(row);
    file->Finish();
    Tell(context, "La lista está en " + whole, ui::Icon::Information);
  } catch (const std::exception& error) {
    Tell(context, std::string("No se ha exportado la lista. ") + error.what(), ui::Icon::Critical);
  }
}

void PrintList(Context& context, ui::List& list, ui::ListPaper paper) {
  const DateTime now = context.ports.clock.Now();
  try {
    const Report report = ReportOf(list, now);
    if (paper == ui::ListPaper::Printer) return context.ports.reports.Print(report, "");
    context.ports.reports.Show(report, FileNameFor(list, now));
  } catch (const std::exception& error) {
    Tell(context, std::string("No se ha impreso la lista. ") + error.what(), ui::Icon::Critical);
  }
}

}  // namespace tpv
