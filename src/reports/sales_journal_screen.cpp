#include "reports/sales_journal_screen.h"

#include "base/date_time.h"
#include "base/mask.h"
#include "base/text.h"
#include "data/archived.h"
#include "data/sales_in_progress.h"
#include "data/statements.h"
#include "output/sales_ticket.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "reports/deleted_tickets.h"
#include "reports/sales_journal_breakdown.h"
#include "reports/sales_journal_statements.h"
#include "reports/ticket_deletion.h"
#include "sale/sale_screen.h"
#include "screen/declared_fields.h"
#include "screen/sold_totals.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

namespace {

constexpr int kNumberColumn = 2;
constexpr const char* kAmountMask = "#,##0.00";

// The columns that both lists begin and end with; `cell_button` opens the menu.
std::vector<ui::GridColumn> ListColumns(bool cell_button) {
  using enum ui::Align;
  return {{"Fecha-Hora", "DD/MM/YYYY HH:MM", 1500, Centre, false, false},
          {"Numero", "", 1200, Left, false, cell_button},
          {"Caja", "", 600, Centre, false, false},
          {"Vendedor", "", 600, Centre, false, false},
          {"Cliente", "", 4500, Left, false, false}};
}

}  // namespace

FrmTpvDiarioVentas::FrmTpvDiarioVentas(Context& ctx) : Screen(ctx, "frmTpvDiarioVentas") {
  caption = "Punto de venta rapido. Diario de Ventas/Cobros";
  DeclareFields();
  DeclareLayout();
  Connect();
}

void FrmTpvDiarioVentas::DeclareFields() {
  DeclarePeriod(Text1, {{10, "Base Imponible"},   {3, "Impuestos"},          {8, "Total Ventas"},
                        {6, "Cobro en metalico"}, {7, "Cobros con tarjeta"}, {1, "Descuentos"},
                        {0, "Total de cobros"}});
  Text1[8].large = Text1[0].large = true;
}

void FrmTpvDiarioVentas::DeclareLayout() {
  dbgAnulados.stretch = true;
  Frame5.visible = false;
  Frame5.Rows({{&dbgAnulados}});
  DbgDiario.stretch = dbgCobPag.stretch = dbgCajas.stretch = dbgVendedor.stretch = true;
  dbgCajas.visible = dbgVendedor.visible = false;
  Frame4.Rows({{&DbgDiario}, {&dbgCajas, &dbgVendedor}, {&Text1[10], &Text1[3], &Text1[8]}});
  Frame1.Rows({{&dbgCobPag}, {&Text1[6], &Text1[7], &Text1[1], &Text1[0]}});
  rows = {{&Text1[5], &Text1[2], &Check1, &Check2, &Check3, &Check4, &cmdInforme, &cmdSalir},
          {&Frame4},
          {&Frame5},
          {&Frame1}};
}

void FrmTpvDiarioVentas::Connect() {
  cmdInforme.emphasis = ui::Emphasis::Strong;
  cmdInforme.click = [this] { Run(); };
  cmdSalir.click = [this] { Close(); };
  Check1.click = [this] { RunAgain(); };
  Check2.click = [this] {
    dbgCajas.visible = Check2.checked;
    RunAgain();
  };
  Check3.click = [this] {
    dbgVendedor.visible = Check3.checked;
    RunAgain();
  };
  Check4.click = [this] {
    Frame5.visible = Check4.checked;
    Frame1.visible = !Check4.checked;
    RunAgain();
  };
  DbgDiario.detail_field = "Cav_Id";
  DbgDiario.cell_button = [this](int row, int column) { OpenTicketMenu(row, column); };
  mnu00.entries = {
      {"mnu01", "Imprimir", [this] { PrintTicket(); }},
      {"mnu02", "Visualizar", [this] { ShowStoredSale(context(), SelectedTicket(), true); }},
      {"mnu03", "Eliminar", [this] { Delete(); }}};
}

void FrmTpvDiarioVentas::OnLoad() {
  Screen::OnLoad();
  Text1[5].text = Text1[2].text = ToDayFirst(context().ports.clock.Now());
}

void FrmTpvDiarioVentas::RunAgain() {
  if (listed_) Run();
}

void FrmTpvDiarioVentas::Run() {
  Frame4.caption = "Totales del informe";
  if (!RequireDate(Text1[5], "No ha indicado desde que fecha quiere el informe") ||
      !RequireDate(Text1[2], "No ha indicado hasta que fecha quiere el informe")) {
    return;
  }
  listed_ = Finishes(caption, [this](ui::LongWork& work) { Read(work); });
  if (!listed_) return Forget();
  const std::string archived =
      ArchivedSince(Database(), ParseDayFirst(Text1[5].text), context().ports.clock.Now());
  if (!archived.empty()) Refuse(archived, &cmdInforme, Icon::Information);
}

// Of a search that was given up on the way nothing stays.
void FrmTpvDiarioVentas::Forget() {
  Frame4.caption = "Totales del informe";
  for (ui::Grid* grid : {&DbgDiario, &dbgCobPag, &dbgCajas, &dbgVendedor, &dbgAnulados}) grid->Clear();
  for (const int index : {10, 3, 8, 6, 7, 1, 0}) Text1[index].text.clear();
}

void FrmTpvDiarioVentas::Read(ui::LongWork& work) {
  work.Stage("Sumando las ventas");
  const std::string days = BetweenDays(Text1[5].text, Text1[2].text);
  const auto count = Database().Execute(journal::CountSales(days));
  Frame4.caption = SoldCountCaption(count->Field(0));
  ShowSalesTotals(days);
  work.Stage("Reuniendo ventas y cobros");
  ShowLists(days);
  ShowBreakdown(days);
  if (Check4.checked) ShowDeleted(days);
}

void FrmTpvDiarioVentas::ShowSalesTotals(const std::string& days) {
  ShowSold(Text1, ReadSold(Database(), days, LineTaxBy(toolkit())));
}

void FrmTpvDiarioVentas::ShowCollectionTotals(const std::string& days) {
  const auto sums = Database().Execute(journal::CollectionTotals(days));
  if (sums->Eof()) return;
  const std::pair<int, const char*> totals[] = {
      {6, "Metalico"}, {7, "Tarjeta"}, {1, "Dtos"}, {0, "Cobros"}};
  for (const auto& [index, field] : totals) {
    Text1[index].text = FormatNumber(sums->Field(field).NumberOr(0), "0.00");
  }
}

void FrmTpvDiarioVentas::ShowLists(const std::string& days) {
  using enum ui::Align;
  std::vector<ui::GridColumn> sales = ListColumns(true);
  sales.insert(sales.begin(), {"", "", 0, Left, true, false});
  for (const char* amount : {"Ventas", "Pendiente"}) {
    sales.push_back({amount, kAmountMask, 1000, Right, false, false, true});
  }
  DbgDiario.Bind(*Database().Execute(journal::Sales(days)), std::move(sales));
  ShowCollectionTotals(days);
  std::vector<ui::GridColumn> collections = ListColumns(false);
  collections.push_back({"Metalico", kAmountMask, 1200, Right, false, false, true});
  for (const char* amount : {"Tarjeta", "Descuento"}) {
    collections.push_back({amount, kAmountMask, 1000, Right, false, false, true});
  }
  dbgCobPag.Bind(*Database().Execute(journal::Collections(days)), std::move(collections));
}

void FrmTpvDiarioVentas::ShowBreakdown(const std::string& days) {
  if (Check2.checked) {
    journal::FillTotals(dbgCajas, DbgDiario, dbgCobPag,
                        {"Caja", "Cav_Caja", "DiaCaj_Caja",
                         [](std::int32_t till) { return std::to_string(till); }});
  }
  if (Check3.checked) {
    auto names = AgentNames(Database());
    journal::FillTotals(
        dbgVendedor, DbgDiario, dbgCobPag,
        {"Vendedor", "Agente", "DiaCaj_IdAge",
         [&names](std::int32_t agent) { return std::to_string(agent) + " " + names[agent]; }});
  }
  if (Check1.checked) {
    journal::WeaveLines(DbgDiario, *Database().Execute(journal::LinesOfTickets(days)));
  }
}

void FrmTpvDiarioVentas::ShowDeleted(const std::string& days) {
  using enum ui::Align;
  dbgAnulados.Bind(*Database().Execute(DeletedTickets(days)),
                   {{"Anulado", "DD/MM/YYYY HH:MM", 1500, Centre, false, false},
                    {"Numero", "", 1200, Left, false, false},
                    {"En caja", "", 700, Centre, false, false},
                    {"Usuario", "", 800, Centre, false, false},
                    {"Vendedor", "", 1800, Left, false, false},
                    {"Venta del", "DD/MM/YYYY HH:MM", 1500, Centre, false, false},
                    {"Caja", "", 600, Centre, false, false},
                    {"Importe", kAmountMask, 1000, Right, false, false, true},
                    {"Lineas", "", 4500, Left, false, false}});
}

// A line shown under its ticket has no number to click on.
void FrmTpvDiarioVentas::OpenTicketMenu(int row, int column) {
  if (column == kNumberColumn && !DbgDiario.Value(row, "Cav_Id").IsNull()) OpenMenu(mnu00);
}

std::int32_t FrmTpvDiarioVentas::SelectedTicket() const {
  return DbgDiario.Value(DbgDiario.current_row, "Cav_Id").ToInt32();
}

void FrmTpvDiarioVentas::PrintTicket() {
  context().IdAlbaran = SelectedTicket();
  PrintSalesTicket(context(), TicketPaper::Reprint);
}

void FrmTpvDiarioVentas::Delete() {
  const std::int32_t id = SelectedTicket();
  context().IdAlbaran = id;
  const std::string ticket = DbgDiario.Cell(DbgDiario.current_row, kNumberColumn);
  pending_message = "e";
  if (!Confirm("Desea eliminar la venta " + ticket, Icon::Question, Answer::No)) return;
  if (!Confirm("Confirma la eliminación de la venta " + ticket, Icon::Critical, Answer::No)) return;
  if (!AcceptWhatRelies(id, ticket)) return;
  std::string refusal;
  if (DeleteInStore(id, refusal)) return Run();
  Refuse(refusal, nullptr, Icon::Critical);
}

// An invoiced ticket, or one whose payment was closed, leaves books that no longer add up.
bool FrmTpvDiarioVentas::AcceptWhatRelies(std::int32_t sale_id, const std::string& ticket) {
  accepted_ = BooksRelyingOn(Database(), sale_id);
  if (accepted_.empty()) return true;
  std::string text;
  for (const std::string& sentence : accepted_) text += sentence + std::string(kLineBreak);
  return Confirm(text + "¿Eliminar la venta " + ticket + " de todos modos?", Icon::Critical, Answer::No);
}

// Nothing is asked or shown while the store is locked.
bool FrmTpvDiarioVentas::DeleteInStore(std::int32_t sale_id, std::string& refusal) {
  try {
    Transaction transaction(Database());
    const auto in_progress = SaleInProgressOf(Database(), sale_id);
    const std::string entry = SharedCollection(Database(), sale_id);
    if (in_progress && in_progress->Parked()) {
      refusal = "La venta está aparcada. Elimínela con «Recuperar», en la pantalla de venta";
    } else if (BooksRelyingOn(Database(), sale_id) != accepted_) {
      refusal = "La venta se ha facturado o cerrado mientras tanto. Búsquela otra vez";
    } else if (entry.empty()) {
      TraceDeletion(context(), sale_id);
      DeleteTicket(context(), sale_id);
      transaction.Commit();
      return true;
    } else {
      refusal = "La venta se cobró junto con otras en el apunte de caja " + entry +
                ". No se puede eliminar: las otras ventas perderían su cobro.";
    }
  } catch (const std::exception& error) {
    refusal = std::string("Error en la eliminación de ticket") + error.what();
  }
  return false;
}

}  // namespace tpv
