#include "screen/unprinted_screen.h"

#include <algorithm>

#include "base/mask.h"
#include "platform/printer.h"

namespace tpv {

using ui::Icon;

namespace {

constexpr const char* kWindow = "Sin imprimir";

ui::ListItem ItemOf(const UnprintedDocument& document) {
  ui::ListItem item;
  item.cells = {document.title, FormatDate(document.since, "DD/MM/YYYY HH:MM"),
                document.maybe_printed ? "Puede haberse impreso ya" : "Sin imprimir",
                document.printer.empty() ? "La de siempre" : document.printer, document.why};
  return item;
}

}  // namespace

FrmSinImprimir::FrmSinImprimir(Context& context, PrintOutbox& outbox)
    : Screen(context, "frmSinImprimir"), outbox_(outbox) {
  caption = kWindow;
  DeclareLayout();
  ListView1.selected = [this](int) { ShowChosen(); };
  cmdImprimir.click = [this] { Print(); };
  cmdOlvidar.click = [this] { Forget(); };
  cmdSalir.click = [this] { Close(); };
}

void FrmSinImprimir::DeclareLayout() {
  using enum ui::Align;
  ListView1.layout = {{"Documento", "", 3000, Left, false, false},
                      {"Desde", "", 1800, Centre, false, false},
                      {"Estado", "", 3400, Centre, false, false},
                      {"Impresora", "", 2200, Left, false, false},
                      {"Motivo", "", 4200, Left, false, false}};
  ListView1.stretch = true;
  cboImpresora.columns = 30;
  cmdImprimir.emphasis = ui::Emphasis::Strong;
  cmdOlvidar.emphasis = ui::Emphasis::Warning;
  Frame1.Rows({{&ListView1}});
  rows = {{&Frame1}, {&lblAviso}, {&cboImpresora, &cmdImprimir, &cmdOlvidar, &cmdSalir}};
}

void FrmSinImprimir::OnLoad() {
  Screen::OnLoad();
  OfferPrinters();
  List();
}

void FrmSinImprimir::OfferPrinters() {
  cboImpresora.Offer(ui::Entries(context().ports.printers.Installed()));
}

void FrmSinImprimir::List() {
  documents_ = outbox_.List();
  ListView1.items.clear();
  for (const UnprintedDocument& document : documents_) ListView1.items.push_back(ItemOf(document));
  ListView1.current_row = documents_.empty() ? -1 : 0;
  ShowChosen();
}

const UnprintedDocument* FrmSinImprimir::Chosen() const {
  const auto row = static_cast<std::size_t>(ListView1.current_row);
  return row < documents_.size() ? &documents_[row] : nullptr;
}

void FrmSinImprimir::ShowChosen() {
  const UnprintedDocument* chosen = Chosen();
  cmdImprimir.enabled = cmdOlvidar.enabled = cboImpresora.enabled = chosen != nullptr;
  lblAviso.caption = chosen == nullptr        ? "No queda ningún documento sin imprimir."
                     : chosen->maybe_printed ? "Mire en la impresora antes de imprimirlo: puede haber salido ya."
                                             : "Elija la impresora en la que debe salir.";
  if (chosen == nullptr) return;
  cboImpresora.index = cboImpresora.items.empty() ? -1 : 0;  // where its own is gone
  cboImpresora.SelectIf([&](std::string_view printer) { return printer == chosen->printer; });
}

// What happened meanwhile is told, and the list shown as it is now.
template <typename Act>
void FrmSinImprimir::WithChosen(Act act) {
  const UnprintedDocument* chosen = Chosen();
  if (chosen == nullptr) return;
  const UnprintedDocument document = *chosen;
  try {
    act(document);
  } catch (const PrintError& error) {
    Refuse(error.what(), nullptr, Icon::Critical);
  }
  List();
  if (documents_.empty()) SetFocus(cmdSalir);
}

void FrmSinImprimir::Print() {
  WithChosen([this](const UnprintedDocument& document) {
    const std::string question = "«" + document.title + "» puede haberse impreso ya. ¿Desea imprimirlo otra vez?";
    if (document.maybe_printed && !Confirm(question, Icon::Question, ui::Answer::No)) return;
    outbox_.Print(document.id, cboImpresora.Text());
  });
}

void FrmSinImprimir::Forget() {
  WithChosen([this](const UnprintedDocument& document) {
    const std::string question = "¿Desea olvidar «" + document.title + "»? No se imprimirá.";
    if (Confirm(question, Icon::Question, ui::Answer::No)) outbox_.Forget(document.id);
  });
}

void ShowUnprinted(Context& context) {
  PrintOutbox* const outbox = context.ports.printers.Outbox();
  if (outbox == nullptr) return;
  ui::MessageBox box;
  box.title = kWindow;
  box.text = "No hay documentos sin imprimir";
  box.icon = Icon::Information;
  try {
    if (!outbox->List().empty()) {
      FrmSinImprimir screen(context, *outbox);
      context.ports.ui.ShowModal(screen);
      return;
    }
  } catch (const PrintError& error) {
    box.text = error.what();
    box.icon = Icon::Critical;
  }
  context.ports.ui.Show(box);
}

}  // namespace tpv
