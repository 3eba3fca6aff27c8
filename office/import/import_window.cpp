#include "office/import/import_window.h"

#include "base/mask.h"
#include "base/text.h"
#include "platform/table_file.h"
#include "platform/ui/long_work.h"

namespace tpv::office {

namespace {

// In the order of ImportKind: what a first file needs.
constexpr const char* kColumns[] = {
    "codigo, descripcion, precio_con_iva (o precio) y tipo_iva; si quiere, codigo_barras, existencias y almacen",
    "codigo y nombre; si quiere, nif, via, poblacion y las demás que dice la ayuda (F1)",
    "codigo y existencias; si quiere, almacen"};

std::string Count(long number, const char* one, const char* more) {
  return FormatNumber(static_cast<double>(number), "#,##0") + " " + (number == 1 ? one : more);
}

std::string Summary(const ImportReport& report) {
  return Count(report.added, "nuevo", "nuevos") + ", " + Count(report.changed, "cambiado", "cambiados") + ", " +
         Count(report.same, "igual", "iguales") + ", " + Count(report.refused, "rechazado", "rechazados");
}

// What is shown of a file that has more to say.
ui::ListItem More() { return {{"…", "", "", "y más líneas"}}; }

}  // namespace

ImportWindow::ImportWindow(Context& ctx, const Tools& tools) : Screen(ctx, "frmImportar"), tools_(tools) {
  caption = "Importar de una hoja de cálculo";
  Text1.Add(0, "Fichero CSV").columns = 50;
  Text1[0].stretch = true;
  lblResumen.stretch = true;
  lblResumen.lines = 2;
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
  Forget();
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
  lblResumen.caption = "La primera fila del fichero dice sus columnas: " + std::string(kColumns[cboTipo.index]) +
                       ". Hasta que pulse Importar no se toca nada.";
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
                               OneLine(line.changes)}});
  }
  if (static_cast<std::size_t>(report.added + report.changed) > report.lines.size()) lstFilas.items.push_back(More());
  lstFilas.current_row = lstFilas.items.empty() ? -1 : 0;
  lblResumen.caption = Summary(report);
}

void ImportWindow::Preview() {
  Forget();
  const ImportOrder order = Order();
  if (order.path.empty()) return Refuse("Elija el fichero que importar", &Text1[0], ui::Icon::Exclamation);
  ImportReport report;
  const auto began = std::chrono::steady_clock::now();
  const bool finished = Finishes(caption, [&](ui::LongWork& work) {
    work.Stage("Mirando qué cambiaría");
    report = PreviewImport(Database(), *tools_.tables, order);
  });
  if (!finished) return;
  looking_ = std::chrono::steady_clock::now() - began;
  Show(report);
  if (report.refused > 0) {
    lblResumen.caption += ". No se importa nada mientras haya líneas rechazadas: corrija el fichero y vuelva a verlo.";
    return SetFocus(lstFilas);
  }
  cmdImportar.enabled = report.added + report.changed > 0;
  if (cmdImportar.enabled) return SetFocus(cmdImportar);
  lblResumen.caption += report.same > 0 ? ". Todo está ya como en el fichero."
                                        : ". Detrás de la fila de las columnas no hay ninguna más.";
}

// What the other tills will notice of it: storing takes about twice as long as looking.
std::string ImportWindow::Waiting() const {
  constexpr std::chrono::seconds kPatienceOfASale{4};
  const auto storing = std::chrono::ceil<std::chrono::seconds>(2 * looking_);
  if (storing <= kPatienceOfASale) return "Mientras se graba, las demás cajas esperan.";
  return "Se tarda unos " + std::to_string(storing.count()) +
         " segundos en grabar. Mientras tanto las demás cajas no pueden vender: dirán que el almacén está ocupado. Mejor "
         "con la tienda cerrada.";
}

// Everything is checked again where it is stored.
void ImportWindow::Import() {
  if (!Confirm("¿Importar lo que se ve? " + lblResumen.caption + ".\r\n" + Waiting(), ui::Icon::Question)) return;
  ImportReport report;
  const bool finished = Finishes(caption, [&](ui::LongWork& work) {
    work.Stage("Grabando");
    report = StoreImport(Database(), *tools_.tables, Order(), [&] { work.LastStage("Terminando de grabar"); });
  });
  if (!finished) return Message("No se ha importado nada", ui::Icon::Information);
  cmdImportar.enabled = false;
  Show(report);
  if (report.stored) return Message("Importado: " + Summary(report), ui::Icon::Information);
  Message("No se ha importado nada: el fichero o la tienda han cambiado. Vuelva a verlo", ui::Icon::Exclamation);
}

}  // namespace tpv::office
