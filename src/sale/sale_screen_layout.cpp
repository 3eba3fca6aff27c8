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
  cmdCierre.enabled = false;
}

void FrmTpv::DeclareFields() {
  using enum ui::Input;
  const Field fields[] = {
      {6, "Nº Caja", 6, 5, Number, false},
      {0, "Vendedor (F1 busqueda alfabetica)", 8, 9, Number, false},
      {1, "", 30, 0, Any, true},
      {2, "Cliente Contado", 8, 9, Number, false},
      {5, "", 40, 0, Any, true},
      {4, "Fecha", 12, 10, Date, false},
      {9, "Serie", 6, 0, Any, true},
      {11, "Numero", 9, 0, Any, true},
      {21, "Unidades", 9, 12, Number, false},
      {19, "Articulo (F1 Busqueda albafetica)", 18, 20, Any, false},
      {18, "Descripción", 40, 100, Any, false},
      {17, "Precio", 11, 12, Number, false},
      {7, "% Dto", 7, 7, Number, false},
      {10, "Base Imponible", 12, 0, Any, true},
      {3, "Impuestos", 12, 0, Any, true},
      {8, "Total", 12, 0, Any, true},
  };
  Declare(fields);
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
  rows = {{&Frame1}, {&Frame2}, {&dbgVenta}, {&Frame4, &cmdNueva, &cmdSalir}, {&Frame3}};
}

void FrmTpv::ConnectFields() {
  Text1[6].left = [this] { LeaveTill(); };
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
  cmdSalir.click = [this] { Exit(); };
}

}  // namespace tpv
