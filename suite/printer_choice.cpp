#include "suite/printer_choice.h"

#include "platform/printer.h"
#include "platform/settings.h"
#include "platform/ui/front_end.h"

namespace tpv::suite {

PrinterChoice::PrinterChoice(Ports& ports) : LateBound("ZRSPOOL.ClsSpool"), ports_(ports) {
  Define("SelectPrinter", 0, 0, [this](auto) { return SelectPrinter(); });
}

// Closing the list without a choice keeps the printer that was chosen before.
Variant PrinterChoice::SelectPrinter() {
  ui::SearchRequest request;
  request.title = "Impresora de tickets";
  request.captions = {"Impresora"};
  request.widths = {7000};
  request.shown_columns = {0};
  for (const std::string& name : ports_.printers.Installed()) request.rows.push_back({Variant(name)});
  if (const auto chosen = ports_.ui.Search(request)) {
    ports_.settings.Write("OKRA", "Printer", "Spool", request.rows[*chosen][0].ToText());
  }
  return {};
}

}  // namespace tpv::suite
