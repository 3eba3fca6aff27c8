#include "debt/pending_screen.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "data/date_filter.h"
#include "data/statements.h"
#include "debt/account_screen.h"
#include "platform/database.h"
#include "screen/lookups.h"

namespace tpv {

FrmTpvPendiente::FrmTpvPendiente(Context& ctx, ShowSale show_sale)
    : Screen(ctx, "frmTpvPendiente"), show_sale_(std::move(show_sale)) {
  caption = "Cobros pendientes de clientes";
  Text1.Add(9, "Cliente (F1Busqueda albafetica)").input = ui::Input::Number;
  Text1.Add(4).locked = true;
  Text1[4].tab_stop = false;
  MakeDateField(Text1.Add(5, "Desde Fecha"));
  MakeDateField(Text1.Add(2, "Hasta Fecha"));
  Text1[9].max_length = 9;
  Text1[9].tag = "Clientes";
  DeclareLayout();
  Text1[9].left = [this] { LeaveCustomer(); };
  cmdInforme.click = [this] { Run(); };
  cmdCuenta.click = [this] { ShowAccount(); };
  cmdSalir.click = [this] { Close(); };
  DbgDiario.cell_button = [this](int row, int column) { ShowTicket(row, column); };
}

void FrmTpvPendiente::DeclareLayout() {
  for (const auto& [index, columns] : {std::pair(9, 8), {4, 40}, {5, 12}, {2, 12}}) {
    Text1[index].columns = columns;
  }
  Text1[4].stretch = DbgDiario.stretch = true;
  lblTotales.large = true;
  cmdInforme.emphasis = ui::Emphasis::Strong;
  Frame1.Rows({{&Text1[9], &Text1[4]}, {&Text1[5], &Text1[2], &Check1, &cmdInforme, &cmdCuenta, &cmdSalir}});
  rows = {{&Frame1}, {&DbgDiario}, {&lblTotales}};
}

void FrmTpvPendiente::OnF1(std::string_view tag) {
  if (tag != "Clientes") return ShowManual();
  pending_message = "e";
  FindByCode(-1, 0);
}

bool FrmTpvPendiente::FindByCode(std::int32_t code, std::int32_t id) {
  const auto customer = FindCustomer(context(), toolkit(), code, id);
  if (!customer) return false;
  IdCliente = customer->Id();
  Text1[9].text = std::to_string(customer->Code());
  Text1[4].text = customer->Name();
  return true;
}

void FrmTpvPendiente::LeaveCustomer() {
  if (Text1[9].text.empty()) {
    IdCliente = 0;
    Text1[4].text.clear();
    return;
  }
  if (FindByCode(ParseInt32(Text1[9].text).value_or(-2), 0)) return;
  IdCliente = 0;
  Text1[4].text.clear();
  Refuse("Codigo de cliente no existe", &Text1[9]);
}

void FrmTpvPendiente::msCargaRegistros() {
  for (const int index : {9, 2, 4, 5}) Text1[index].enabled = false;
  Check1.enabled = false;
  Run();
}

void FrmTpvPendiente::Run() {
  if (!CheckDates({&Text1[5], &Text1[2]})) return;
  PendingTickets tickets;
  tickets.with_name = true;
  tickets.with_ticket = Check1.checked;
  tickets.filter = (IdCliente == 0 ? std::string() : OfCustomer(IdCliente)) +
                   DateFilter("Cav_fecha", Text1[5].text, Text1[2].text);
  tickets.order = "ORDER BY Cav_Fecha";
  const bool finished = Finishes(caption, [&](ui::LongWork& work) {
    work.Stage("Reuniendo los tickets pendientes");
    DbgDiario.Bind(*Database().Execute(tickets.Select()), Columns());
  });
  if (!finished) DbgDiario.Clear();
  ShowTotal();
}

std::vector<ui::GridColumn> FrmTpvPendiente::Columns() const {
  using enum ui::Align;
  std::vector<ui::GridColumn> columns = {{"", "", 0, Left, true, false}};
  if (Check1.checked) {
    columns.push_back({"Cliente", "", 3000, Left, false, false});
    columns.push_back({"Numero", "", 1200, Left, false, true});
    columns.push_back({"Fecha", "DD/MM/YYYY HH:MM", 1500, Left, false, false});
    columns.push_back({"Vendedor", "", 2000, Left, false, false});
  } else {
    columns.push_back({"Cliente", "", 7800, Left, false, false});
  }
  for (const char* amount : {"Importe", "Cobrado", "Pendiente"}) {
    columns.push_back({amount, "#,##0.00", 1000, Right, false, false, true});
  }
  return columns;
}

void FrmTpvPendiente::ShowTotal() {
  double total = 0;
  for (std::size_t row = 0; row < DbgDiario.rows.size(); ++row) {
    total += DbgDiario.Value(static_cast<int>(row), "Pendiente").NumberOr(0);
  }
  lblTotales.caption = DbgDiario.rows.empty()
                           ? "Total :"
                           : "Total Pendiente: " + FormatNumber(total, "#,###,##0.00€");
}

void FrmTpvPendiente::ShowAccount() {
  if (IdCliente == 0) return Refuse("Indique el cliente", &Text1[9], ui::Icon::Exclamation);
  FrmTpvCuenta account(context(), IdCliente, Text1[9].text, Text1[4].text);
  context().ports.ui.ShowModal(account);
}

void FrmTpvPendiente::ShowTicket(int row, int column) {
  constexpr int kNumberColumn = 2;
  if (column != kNumberColumn) return;
  show_sale_(DbgDiario.Value(row, "Cav_Id").ToInt32());
}

}  // namespace tpv
