#include "cash/cash_count_dialog.h"

#include <cmath>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kNotes = 7;  // the greatest denominations; coins behind them

std::int64_t Cents(double euros) { return std::llround(euros * 100); }

}  // namespace

FrmArqueo::FrmArqueo(Context& ctx) : Screen(ctx, "frmArqueo") {
  caption = "Punto de venta rapido. Arqueo de caja";
  for (std::size_t i = 0; i < kDenominations.size(); ++i) {
    ui::TextBox& pieces = Text1.Add(static_cast<int>(i), DenominationText(i) + " €");
    pieces.input = ui::Input::Number;
    pieces.columns = pieces.max_length = 6;
    pieces.align = ui::Align::Right;
  }
  DeclareLayout();
  cmdBuscar.click = [this] { Explain(); };
  cmdAceptar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Close(); };
}

void FrmArqueo::DeclareLayout() {
  struct Sum {
    ui::TextBox& box;
    const char* caption;
  };
  for (const Sum& sum :
       {Sum{txtEsperado, "Esperado"}, {txtContado, "Contado"}, {txtDiferencia, "Diferencia"}}) {
    sum.box.caption = sum.caption;
    sum.box.columns = 14;
    sum.box.align = ui::Align::Right;
    sum.box.locked = true;
    sum.box.tab_stop = false;
    sum.box.large = true;
  }
  using enum ui::Align;
  lvwMotivos.layout = {{"Apunte", "", 3200, Left, false, false},
                       {"Posible motivo", "", 6800, Left, false, false}};
  lvwMotivos.stretch = true;
  std::vector<ui::Control*> notes;
  std::vector<ui::Control*> coins;
  for (std::size_t i = 0; i < kDenominations.size(); ++i) {
    (i < kNotes ? notes : coins).push_back(&Text1[static_cast<int>(i)]);
  }
  Frame1.Rows({notes});
  Frame2.Rows({coins});
  Frame3.Rows({{&txtEsperado, &txtContado, &txtDiferencia}});
  Frame4.Rows({{&lvwMotivos}});
  cmdAceptar.emphasis = ui::Emphasis::Strong;
  rows = {{&Frame1}, {&Frame2}, {&Frame3}, {&Frame4}, {&cmdAceptar, &cmdBuscar, &cmdCancelar}};
}

void FrmArqueo::OnLoad() {
  Screen::OnLoad();
  for (std::size_t i = 0; i < count.pieces.size(); ++i) {
    if (count.pieces[i] != 0) Text1[static_cast<int>(i)].text = std::to_string(count.pieces[i]);
  }
  ShowTotals();
}

// The sums follow each key.
void FrmArqueo::OnKeyUp(ui::Key key) {
  Screen::OnKeyUp(key);
  Read();
  ShowTotals();
}

// False when a field holds no whole number of pieces, and the focus goes there.
bool FrmArqueo::Read() {
  bool whole = true;
  for (std::size_t i = 0; i < count.pieces.size(); ++i) {
    ui::TextBox& box = Text1[static_cast<int>(i)];
    const std::string typed = Trim(box.text);
    const auto pieces = typed.empty() ? std::int32_t{0} : ParseInt32(typed);
    const bool fits = pieces && *pieces >= 0;
    count.pieces[i] = fits ? *pieces : 0;
    if (!fits && whole) SetFocus(box);
    whole = whole && fits;
  }
  return whole;
}

void FrmArqueo::ShowTotals() {
  txtEsperado.text = FormatNumber(count.expected, "#,##0.00");
  txtContado.text = FormatNumber(count.Counted(), "#,##0.00");
  txtDiferencia.text = FormatNumber(count.Difference(), "#,##0.00");
  cmdBuscar.enabled = count.Difference() != 0;
  lvwMotivos.items.clear();
}

void FrmArqueo::Explain() {
  ShowTotals();
  for (const Proposal& each : ExplainDifference(Cents(count.Difference()), initial, entries)) {
    lvwMotivos.items.push_back({{each.what, each.reason}, false, 0});
  }
}

void FrmArqueo::Accept() {
  if (!Read()) {
    ui::Control* wrong = requested_focus;
    return Refuse("Escriba cuántas piezas hay, sin decimales", wrong, ui::Icon::Exclamation);
  }
  accepted_ = count;
  Close();
}

}  // namespace tpv
