#include "cash/movements_screen.h"
#include "screen/declared_fields.h"

namespace tpv {

FrmTpvMovCaja::FrmTpvMovCaja(Context& ctx) : Screen(ctx, "frmTpvMovCaja") {
  caption = "Movimientos de Entrada/Salida de caja";
  DeclareFields();
  DeclareLayout();
  Connect();
}

void FrmTpvMovCaja::DeclareFields() {
  using enum ui::Input;
  const DeclaredField fields[] = {
      {21, "Fecha", 12, 10, Date, false},
      {0, "Vendedor (F1 Búsqueda alfabética)", 8, 9, Number, false},
      {1, "", 30, 0, Any, true},
      {20, "Nº Caja", 6, 5, Number, false},
      {2, "Cliente (F1Búsqueda albafética)", 8, 9, Number, false},
      {5, "", 40, 0, Any, true},
      {15, "Saldo", 12, 0, Any, true},
      {13, "Concepto", 50, 100, Any, false},
      {11, "Entrega", 12, 12, Number, false},
      {7, "Importe Seleccionado", 12, 0, Any, true},
      {4, "Devolución", 12, 0, Any, true},
      {3, "Descripción de la salida", 50, 100, Any, false},
      {6, "Importe", 12, 12, Number, false},
  };
  tpv::DeclareFields(Text1, fields);
  for (const int index : {15, 11, 7, 4, 6}) Text1[index].align = ui::Align::Right;
  for (const int index : {11, 7, 4, 6}) Text1[index].large = true;
  for (const int index : {1, 5, 13, 3}) Text1[index].stretch = true;
  Text1[0].tag = "Agentes";
  Text1[2].tag = "Clientes";
  Text1[21].enabled = !Check1.checked;
}

void FrmTpvMovCaja::DeclareLayout() {
  using enum ui::Align;
  ListView1.check_boxes = ListView1.stretch = true;
  ListView1.layout = {{"Numero", "", 1200, Left, false, false},
                      {"Fecha", "", 1700, Left, false, false},
                      {"Vendedor", "", 3000, Left, false, false},
                      {"Importe", "", 1200, Right, false, false, true},
                      {"Pendiente", "", 1200, Right, false, false, true}};
  Frame1.Rows({{&Check1, &Text1[21], &Text1[20], &Text1[0], &Text1[1]}, {&Option1_0, &Option1_1}});
  frmCobros.Rows({{&Text1[2], &Text1[5], &Text1[15]},
                  {&Text1[13], &Option3, &Option4, &Check2},
                  {&ListView1},
                  {&Text1[11], &Text1[7], &Text1[4]}});
  frmPagos.Rows({{&Text1[3], &Text1[6]}});
  rows = {{&Frame1}, {&frmCobros}, {&frmPagos}, {&cmdTicket, &cmdCancelar}};
  cmdTicket.emphasis = ui::Emphasis::Strong;
  Option1_0.Check();
  Option3.Check();
  ShowKind();
}

void FrmTpvMovCaja::Connect() {
  Check1.click = [this] { Text1[21].enabled = !Check1.checked; };
  Option1_0.click = Option1_1.click = [this] { ShowKind(); };
  Check2.click = [this] { ListTickets(); };
  Text1[0].left = [this] { LeaveAgent(); };
  Text1[2].left = [this] { LeaveCustomer(); };
  for (const int index : {11, 6}) {
    Text1[index].left = [this, index] { LeaveAmount(index); };
  }
  ListView1.checked = [this](int) { ShowSums(); };
  cmdTicket.click = [this] { Save(); };
  cmdCancelar.click = [this] { Close(); };
}

void FrmTpvMovCaja::ShowKind() {
  frmCobros.enabled = Option1_0.checked;
  frmPagos.enabled = Option1_1.checked;
}

}  // namespace tpv
