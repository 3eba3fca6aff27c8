#include "cash/balance_fields.h"
#include "cash/closing_screen.h"

namespace tpv {

FrmTpvCierreCaja::FrmTpvCierreCaja(Context& ctx) : Screen(ctx, "frmTpvCierreCaja") {
  caption = "Punto de venta rapido. Proceso de Cierre de caja";
  DeclareFields();
  DeclareLayout();
  Connect();
}

void FrmTpvCierreCaja::DeclareFields() {
  MakeDateField(Text1.Add(5, "Fecha cierre"));
  Text1[5].columns = 12;
  ui::TextBox& agent = Text1.Add(11, "Vendedor (F1 busqueda alfabetica)");
  agent.input = ui::Input::Number;
  agent.columns = 8;
  agent.max_length = 9;
  ui::TextBox& agent_name = Text1.Add(12);
  agent_name.columns = 30;
  agent_name.locked = agent_name.stretch = true;
  agent_name.tab_stop = false;
  AddBalanceFields(Text1, Frame1, "Fecha Apertura");
  ui::TextBox& withdrawn = Text1[4];
  withdrawn.locked = false;
  withdrawn.tab_stop = withdrawn.large = true;
  withdrawn.input = ui::Input::Number;
  withdrawn.max_length = 12;
}

void FrmTpvCierreCaja::DeclareLayout() {
  using enum ui::Align;
  ListView1.layout = {{"Caja", "", 900, Left, false, false},
                      {"Fecha apertura", "", 2200, Left, false, false}};
  DbgDiario.stretch = ListView1.stretch = true;
  dbgCajas.visible = false;
  Frame1.visible = false;
  Frame2.Rows({{&Text1[5], &Check2, &Text1[11], &Text1[12]}, {&Check1, &cmdProceso}});
  Frame4.Rows({{&ListView1}});
  cmdGrabar.emphasis = cmdProceso.emphasis = ui::Emphasis::Strong;
  rows = {{&Frame2}, {&Frame4, &Frame1}, {&DbgDiario}, {&dbgCajas}, {&lblArqueo},
          {&lblProceso}, {&cmdGrabar, &cmdArqueo, &cmdCancelar, &cmdInforme, &cmdSalir}};
}

void FrmTpvCierreCaja::Connect() {
  Text1[11].left = [this] { LeaveAgent(); };
  Text1[4].left = [this] { LeaveWithdrawal(); };
  ListView1.selected = [this](int row) { ChooseTill(row); };
  cmdProceso.click = [this] { StartProcess(); };
  cmdGrabar.click = [this] { Save(); };
  cmdArqueo.click = [this] { CountCash(); };
  cmdCancelar.click = [this] { BackToTills(); };
  cmdInforme.click = [this] { ShowJournal(); };
  cmdSalir.click = [this] { Close(); };
}

}  // namespace tpv
