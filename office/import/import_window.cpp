#include "office/import/import_window.h"

#include "base/mask.h"
#include "base/text.h"
#include "platform/table_file.h"

namespace tpv::office {

namespace {

constexpr const char* kWaiting =
    "Elija el fichero y mire qué cambiaría: hasta que pulse Importar no se toca nada.";

std::string Count(long number, const char* what) {
  return FormatNumber(static_cast<double>(number), "#,##0") + " " + what;
}

std::string Summary(const ImportReport& report) {
  return Count(report.added, "nuevos") + ", " + Count(report.changed, "cambiados") + ", " +
         Count(report.same, "iguales") + ", " + Count(report.refused, "rechazados");
}

// What is shown of a file that has more to say.
ui::ListItem More() { return {{"…", "", "", "y más líneas"}}; }

}  // namespace

ImportWindow::ImportWindow(Context& ctx, const Tools& tools) : Screen(ctx, "frmImportar"), tools_(tools) {
  caption = "Importar de una hoja de cálculo";
  Text1.Add(0, "Fichero CSV").columns = 50;
  Text1[0].stretch = true;
  lblResumen.stretch = true;
  cboTipo.Offer(ui::Entries({"Artículos", "Clientes", "Existencias"}));
  lstFilas.layout = {{"Línea", "", 1000, ui::Align::Right}, {"Código", "", 2200}, {"Qué pasa", "", 1600},
                     {"Detalle", "", 7000}};
  Frame1.Rows({{&cboTipo, &Text1[0], &cmdBuscar}, {&cmdVer, &cmdImportar, &cmdCerrar}, {&lblResumen}});
  Frame2.Rows({{&lstFilas}});
  rows = {{&Frame1}, {&Frame2}};
  cmdVer.emphasis = ui::Emphasis::Strong;
  Text1[0].left = [this] { Forget(); };
  cboTipo.changed = [this] { Forget(); };
  cmdBuscar.click = [this] { Browse(); };
  cmdVer.click = [this] { Preview(); };
  cmdImportar.click = [this] { Import(); };
  cmdCerrar.click = [this] { Close(); };
}

void ImportWindow::OnLoad() {
  Screen::OnLoad();
  cmdImportar.enabled = false;
  lblResumen.caption = kWaiting;
}

void ImportWindow::Browse() {
  const std::string path =
      context().ports.ui.ChooseFile({"Fichero que importar", "CSV (*.csv *.txt)", Text1[0].text});
  if (path.empty()) return;
  Text1[0].text = path;
  Forget();
}

ImportOrder ImportWindow::Order() const {
  return {static_cast<ImportKind>(cboTipo.index), Trim(Text1[0].text)};
}

// What was looked at is not what would be stored any more.
void ImportWindow::Forget() {
  cmdImportar.enabled = false;
  lstFilas.items.clear();
  lblResumen.caption = kWaiting;
}

// Painted once a hundredth.
ImportProgress ImportWindow::Telling(const char* doing) {
  return [this, doing, painted = -1](long done, double share) mutable {
    const int percent = static_cast<int>(share * 100);
    if (percent == painted) return true;
    painted = percent;
    lblResumen.caption = std::string(doing) + ": " + std::to_string(percent) + " % (" + Count(done, "filas)");
    context().ports.ui.ProcessEvents();
    return true;
  };
}

void ImportWindow::Show(const ImportReport& report) {
  lstFilas.items.clear();
  for (const Refusal& refusal : report.refusals) {
    const std::string where = refusal.line > 0 ? std::to_string(refusal.line) : std::string();
    lstFilas.items.push_back({{where, "", "Rechazada",
                               OneLine(refusal.field.empty() ? refusal.reason : refusal.field + ": " + refusal.reason)}});
  }
  if (static_cast<std::size_t>(report.refused) > report.refusals.size()) lstFilas.items.push_back(More());
  for (const ImportLine& line : report.lines) {
    lstFilas.items.push_back({{std::to_string(line.line), OneLine(line.key), line.added ? "Nueva" : "Cambia",
                               line.added ? "" : line.changes}});
  }
  if (static_cast<std::size_t>(report.added + report.changed) > report.lines.size()) lstFilas.items.push_back(More());
  lstFilas.current_row = lstFilas.items.empty() ? -1 : 0;
  lblResumen.caption = Summary(report);
}

void ImportWindow::Preview() {
  Forget();
  const ImportOrder order = Order();
  if (order.path.empty()) return Refuse("Elija el fichero que importar", &Text1[0], ui::Icon::Exclamation);
  const ui::WaitCursor waiting(*this);
  const ImportReport report = PreviewImport(Database(), *tools_.tables, order, Telling("Comprobando"));
  Show(report);
  if (report.refused > 0) {
    lblResumen.caption += ". No se importa nada mientras haya líneas rechazadas: corrija el fichero y vuelva a verlo.";
    return SetFocus(lstFilas);
  }
  cmdImportar.enabled = report.added + report.changed > 0;
  if (cmdImportar.enabled) return SetFocus(cmdImportar);
  lblResumen.caption += ". Todo está ya como en el fichero.";
}

// Everything is checked again where it is stored.
void ImportWindow::Import() {
  if (!Confirm("¿Importar lo que se ve? " + lblResumen.caption +
                   ".\r\nMientras se graba, las demás cajas esperan.",
               ui::Icon::Question)) {
    return;
  }
  const ui::WaitCursor waiting(*this);
  cmdImportar.enabled = false;
  const ImportReport report = StoreImport(Database(), *tools_.tables, Order(), Telling("Grabando"));
  Show(report);
  if (report.stored) return Message("Importado: " + Summary(report), ui::Icon::Information);
  Message("No se ha importado nada: el fichero o la tienda han cambiado. Vuelva a verlo", ui::Icon::Exclamation);
}

}  // namespace tpv::office
