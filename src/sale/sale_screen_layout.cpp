#include "output/cash_drawer.h"
#include "sale/sale_screen.h"

namespace tpv {

FrmTpv::FrmTpv(Context& ctx) : SaleEntry(ctx, "frmTpv") {
  DeclareFields();
  DeclareLayout();
  ConnectFields();
  ConnectButtons();
  Frame2.enabled = false;
  cmdGuardar.enabled = cmdCancelar.enabled = cmdFinalizar.enabled = false;
  cmdCierre.enabled = cmdBuscar.enabled = cmdAparcar.visible = false;
}

void FrmTpv::DeclareFields() {
  using enum ui::Input;
  const DeclaredField own[] = {
      {9, "Serie", 6, 0, Any, true},
      {11, "Numero", 9, 0, Any, true},
  };
  DeclareCommonFields(own);
  Text1[2].caption = "Cliente Contado";
  Text1[5].stretch = Text1[8].stretch = Text1[18].stretch = dbgVenta.stretch = true;
}

void FrmTpv::DeclareLayout() {
  Frame1.Rows({{&Text1[6], &Text1[0], &Text1[1], &Text1[9], &Text1[11]},
               {&Text1[2], &Text1[5], &cboFpago, &Check1, &Text1[4]}});
  Frame2.Rows({{&Text1[21], &Text1[19], &Text1[18], &Text1[17], &Text1[7], &cmdGuardar,
                &cmdCancelar}});
  Frame4.Rows({{&Text1[10], &Text1[3], &Text1[8], &cmdFinalizar}});
  Frame3.Rows({{&cmdApertura, &cmdCierre, &cmdPagos, &cmdDevoluciones, &cmdReImprimir,
                &cmdAbreCajon, &cmdBuscar}});
  cmdFinalizar.emphasis = ui::Emphasis::Strong;
  cmdAparcar.tab_stop = cmdRecuperar.tab_stop = false;  // Enter goes from field to field
  maximised = true;
  rows = {{&Frame1}, {&Frame2}, {&dbgVenta, &keys_.frame, &cmdAparcar, &cmdRecuperar}, {&Frame4, &cmdNueva, &cmdSalir}, {&Frame3}};
}

void FrmTpv::ConnectFields() {
  Text1[6].left = [this] { LeaveTill(); };
  dbgVenta.arrangeable = false;  // lines stand as they were sold
  dbgVenta.cell_button = [this](int row, int column) { EditLine(row, column); };
}

void FrmTpv::ConnectButtons() {
  cmdNueva.click = [this] { StartOrCancel(); };
  cmdFinalizar.click = [this] { Finish(); };
  cmdGuardar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Drop(); };
  cmdApertura.click = [this] { OpenTill(); };
  cmdDevoluciones.click = [this] { OpenReturns(); };
  cmdCierre.click = [this] { CloseTill(); };
  cmdPagos.click = [this] { MoveCash(); };
  cmdReImprimir.click = [this] { Reprint(); };
  cmdAbreCajon.click = [this] { OpenDrawer(context()); };
  cmdAparcar.click = [this] { Park(); };
  cmdRecuperar.click = [this] { TakeUp(); };
  cmdSalir.click = [this] { Exit(); };
  cmdBuscar.click = [this] {
    SetFocus(Text1[19]);
    LookUpArticle({});
  };
}

}  // namespace tpv
