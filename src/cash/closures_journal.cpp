#include "cash/closures_journal.h"

#include "base/number_text.h"
#include "cash/ticket_dialog.h"
#include "data/archived.h"
#include "data/date_filter.h"
#include "data/kept_rows.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "screen/lookups.h"

namespace tpv {

namespace {

std::vector<ui::GridColumn> Columns() {
  using enum ui::Align;
  std::vector<ui::GridColumn> columns = {{"nº", "", 900, Right, false, true},
                                         {"Fecha", "DD/MM/YYYY HH:MM", 1500, Left, false, false},
                                         {"Vendedor", "", 3500, Left, false, false},
                                         {"Caja", "", 500, Centre, false, false}};
  for (const auto& [caption, width] :
       {std::pair("Saldo Inicial", 1200), {"Metalico", 1200}, {"Tarjeta", 1200}, {"Pagos", 1000},
        {"Retirado", 1200}, {"Saldo Final", 1200}}) {
    const bool balance = std::string_view(caption).starts_with("Saldo");
    columns.push_back({caption, "#,##0.00", width, Right, false, false, !balance});
  }
  return columns;
}

}  // namespace

FrmTpvDiarioCierres::FrmTpvDiarioCierres(Context& ctx) : Screen(ctx, "frmTpvDiarioCierres") {
  caption = "Punto de venta rapido. Diario de cierres";
  DeclareFields();
  mnu00.caption = "Menus";
  mnu00.entries = {{"mnuImprimir", "Imprimir Cierre", [this] { PrintAgain(); }}};
  Frame1.Rows({{&Text1[9], &Text1[5], &Text1[11], &Text1[12], &Text1[3]},
               {&cmdInforme, &cmdGenerar, &cmdSalir}});
  rows = {{&Frame1}, {&DbgDiario}, {&lblInforme}};
  DbgDiario.stretch = true;
  cmdInforme.emphasis = ui::Emphasis::Strong;
  cmdGenerar.enabled = false;
  Text1[11].left = [this] { LeaveAgent(); };
  cmdInforme.click = [this] { Run(); };
  cmdGenerar.click = [this] { Report(); };
  cmdSalir.click = [this] { Close(); };
  DbgDiario.cell_button = [this](int, int column) {
    if (column == 0) OpenMenu(mnu00);
  };
}

void FrmTpvDiarioCierres::DeclareFields() {
  MakeDateField(Text1.Add(9, "Desde fecha"));
  MakeDateField(Text1.Add(5, "Hasta Fecha"));
  Text1.Add(11, "Vendedor (F1 busqueda alfabetica)").tag = "Vendedor";
  Text1.Add(12).locked = true;
  Text1.Add(3, "Caja");
  for (const auto& [index, columns] : {std::pair(9, 12), {5, 12}, {11, 8}, {12, 30}, {3, 6}}) {
    Text1[index].columns = columns;
  }
  Text1[11].input = Text1[3].input = ui::Input::Number;
  Text1[11].max_length = 9;
  Text1[3].max_length = 5;
  Text1[12].tab_stop = false;
  Text1[12].stretch = true;
}

void FrmTpvDiarioCierres::OnF1(std::string_view tag) {
  if (tag != "Vendedor") return SendTab();
  pending_message = "e";
  ShowAgent(0);
}

bool FrmTpvDiarioCierres::ShowAgent(std::int32_t id) {
  return LookUpAgent(context(), toolkit(), id, Text1[11], Text1[12], Offered::Everybody);
}

void FrmTpvDiarioCierres::LeaveAgent() {
  if (Text1[11].text.empty()) return Text1[12].text.clear();
  if (ShowAgent(Int32OrZero(Text1[11].text))) return;
  Refuse("Codigo de vendedor no existe", &Text1[11]);
}

std::string FrmTpvDiarioCierres::Filter() const {
  std::string filter = DateFilter("DiaCaj_Fecha", Text1[9].text, Text1[5].text);
  if (!Text1[5].text.empty()) filter += " ";
  if (!Text1[11].text.empty()) {
    filter += " AND DiaCaj_IdAge = " + sql::WholeNumber(Text1[11].text);
  }
  if (!Text1[3].text.empty()) filter += " AND DiaCaj_Caja = " + sql::WholeNumber(Text1[3].text);
  return filter;
}

void FrmTpvDiarioCierres::Run() {
  if (!CheckDates({&Text1[9], &Text1[5]})) return;
  cmdGenerar.enabled = false;
  DbgDiario.Clear();
  const auto closures = Database().Execute(
      "SELECT DiaCaj_Id,DiaCaj_Fecha,(SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) as "
      "Vendedor, DiaCaj_Caja,DiaCaj_SaldoIni,DiaCaj_CobMet,DiaCaj_CobTar,DiaCaj_Pagos,DiaCaj_Ret, "
      "(DiaCaj_SaldoIni + DiaCaj_CobMet - DiaCaj_Pagos - DiaCaj_Ret) as SFinal "
      "FROM DiaCaj  WHERE DiaCaj_Tipo = 9 " + Filter() + " Order by DiaCaj_Fecha desc ");
  DbgDiario.Bind(*closures, Columns());
  cmdGenerar.enabled = !DbgDiario.rows.empty();
  lblInforme.caption.clear();
}

std::string FrmTpvDiarioCierres::MakeReport() {
  const ui::WaitCursor waiting(*this);
  const auto reports = context().ports.objects.Create("ZRReportes.ZRReports");
  reports->Put("MyBd", Variant(std::static_pointer_cast<Object>(context().MyBd)));
  const std::shared_ptr<Object> rsCierres =
      std::make_shared<KeptRows>(DbgDiario.fields, DbgDiario.rows);
  return reports->Invoke("ZTPVCierresCaja", true, rsCierres).TextOr("");
}

void FrmTpvDiarioCierres::Report() {
  lblInforme.caption = MakeReport();
  context().ports.ui.ProcessEvents();
}

void FrmTpvDiarioCierres::PrintAgain() {
  if (DbgDiario.current_row < 0) return;
  const std::int32_t closure = DbgDiario.Value(DbgDiario.current_row, "DiaCaj_Id").IntOr(0);
  if (closure <= 0) return;
  if (const std::string archive = ArchiveOfClosure(Database(), closure); !archive.empty()) {
    return Refuse("El desglose del cierre " + std::to_string(closure) + " " + archive, &DbgDiario);
  }
  FrmFactuTicket ticket(context());
  ticket.mode = FrmFactuTicket::Mode::ClosurePrint;
  ticket.closure_id = closure;
  context().ports.ui.ShowModal(ticket);
}

}  // namespace tpv
