#include "office/export_window.h"

#include "base/mask.h"
#include "base/text.h"
#include "platform/clock.h"
#include "platform/table_file.h"
#include "platform/ui/long_work.h"

namespace tpv::office {

ExportWindow::ExportWindow(Context& ctx, const Tools& tools) : Screen(ctx, "frmExportar"), tools_(tools) {
  caption = "Exportar a una hoja de cálculo";
  Text1.Add(0, "Fichero CSV que se escribe").columns = 50;
  Text1[0].stretch = true;
  lblProceso.stretch = true;
  MakeDateField(Text1.Add(1, "Desde el día"));
  MakeDateField(Text1.Add(2, "Hasta el día"));
  // In the order of ExportKind.
  cboTipo.Offer(ui::Entries({"Artículos", "Clientes", "Existencias", "Tickets", "Líneas de los tickets", "Cobros y pagos",
                             "Facturas", "Cierres"}));
  Frame1.Rows({{&cboTipo, &Text1[1], &Text1[2]}, {&Text1[0], &cmdBuscar}, {&lblProceso}});
  rows = {{&Frame1}, {&cmdExportar, &cmdCerrar}};
  cmdExportar.emphasis = ui::Emphasis::Strong;
  cboTipo.changed = [this] { ShowDates(); };
  cmdBuscar.click = [this] {
    const std::string path = context().ports.ui.ChooseFile(
        {"Fichero que se escribe", "CSV (*.csv)", Text1[0].text, ui::FileQuestion::Kind::New});
    if (!path.empty()) Text1[0].text = path;
  };
  cmdExportar.click = [this] { Export(); };
  cmdCerrar.click = [this] { Close(); };
}

void ExportWindow::OnLoad() {
  Screen::OnLoad();
  ShowDates();
}

void ExportWindow::ShowDates() {
  Text1[1].enabled = Text1[2].enabled = IsDated(Kind());
  lblProceso.caption = IsDated(Kind()) ? "Los dos días incluidos; sin ellos, todo."
                                       : "Este fichero se puede importar otra vez.";
}

void ExportWindow::Export() {
  ExportOrder order{Kind(), Trim(Text1[0].text), {}, {}};
  if (order.path.empty()) return Refuse("Diga en qué fichero se escribe", &Text1[0], ui::Icon::Exclamation);
  if (IsDated(order.kind)) {
    if (!CheckDates({&Text1[1], &Text1[2]})) return;
    order.from = ParseDayFirst(Text1[1].text);
    order.to = ParseDayFirst(Text1[2].text);
  }
  try {
    long written = 0;
    const bool finished = Finishes(caption, [&](ui::LongWork& work) {
      work.Stage("Escribiendo el fichero");
      written = ExportTable(Database(), *tools_.tables, order);
    });
    if (!finished) return;
    Message("Exportado: " + FormatNumber(static_cast<double>(written), "#,##0") + " filas en " + Text1[0].text,
            ui::Icon::Information);
  } catch (const TableError& error) {
    Refuse(error.what(), &Text1[0], ui::Icon::Critical);
  }
}

}  // namespace tpv::office
