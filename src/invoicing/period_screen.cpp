#include "invoicing/period_screen.h"

#include "base/mask.h"
#include "data/archived.h"
#include "data/statements.h"
#include "fiscal/issuing.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/objects.h"
#include "screen/declared_fields.h"
#include "screen/sold_totals.h"

namespace tpv {

using ui::Icon;

FrmTpvFacturas::FrmTpvFacturas(Context& ctx) : Screen(ctx, "frmTpvFacturas") {
  caption = "Facturación de tickets de venta";
  DeclareFields();
  Frame4.Rows({{&Text1[10], &Text1[3], &Text1[8]}});
  rows = {{&Text1[5], &Text1[2], &cmdInforme, &cmdFacturar, &cmdSalir}, {&DbgDiario}, {&Frame4}};
  cmdFacturar.enabled = false;
  cmdInforme.emphasis = cmdFacturar.emphasis = ui::Emphasis::Strong;
  cmdInforme.click = [this] { Search(); };
  cmdFacturar.click = [this] { Invoice(); };
  cmdSalir.click = [this] { Close(); };
}

void FrmTpvFacturas::DeclareFields() {
  DeclarePeriod(Text1, {{10, "Base Imponible"}, {3, "Impuestos"}, {8, "Total"}});
  Text1[8].large = true;
  DbgDiario.stretch = true;
}

// What a search that fails on the way has read is not invoiced.
void FrmTpvFacturas::ForgetSearch() {
  cmdFacturar.enabled = false;
  tickets_.clear();
  DbgDiario.Clear();
  for (const int index : {10, 3, 8}) Text1[index].text.clear();
}

void FrmTpvFacturas::Search() {
  Frame4.caption = "Totales del periodo";
  if (!RequireDate(Text1[5], "No ha indicado desde que fecha se inicia el periodo") ||
      !RequireDate(Text1[2], "No ha indicado hasta que fecha termina el periodo")) {
    return;
  }
  ForgetSearch();
  from_ = Text1[5].text;
  to_ = Text1[2].text;
  if (!Finishes(caption, [this](ui::LongWork& work) { Read(work); })) {
    Frame4.caption = "Totales del periodo";
    return ForgetSearch();
  }
  const std::string archived = ArchivedSince(Database(), ParseDayFirst(from_), context().ports.clock.Now());
  if (!archived.empty()) Refuse(archived, &cmdInforme, Icon::Information);
}

void FrmTpvFacturas::Read(ui::LongWork& work) {
  work.Stage("Contando los tickets");
  const std::string days = BetweenDays(from_, to_);
  tickets_ = " WHERE Cav_fecha " + days + "AND Cav_Ticket = 1 AND Cav_Situa =1";
  seen_ = AboutToSee(Database());
  const auto count = Database().Execute("SELECT COUNT(*) From Cav " + tickets_);
  Frame4.caption = SoldCountCaption(count->Field(0));
  work.Stage("Sumando las ventas");
  ShowTotals(days);
  work.Stage("Reuniendo los tickets");
  ShowTickets();
  See(seen_, DbgDiario);
  cmdFacturar.enabled = !DbgDiario.rows.empty();
}

// Over every ticket of the period, also those already invoiced.
void FrmTpvFacturas::ShowTotals(const std::string& days) {
  ShowSold(Text1, ReadSold(Database(), days,
                           [](double amount, double rate) { return amount / 100 * rate; }));
}

void FrmTpvFacturas::ShowTickets() {
  const auto tickets = Database().Execute(
      "SELECT Cav_Id,Cav_Fecha, " + std::string(kTicketReference) +
      " as Ticket, Cav_Caja,Cav_AGente as Agente, Cav_NFiscal as Cliente, " +
      std::string(kAmountWithTax) +
      " as total FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva " +
      tickets_ +
      "GROUP BY Cav_Id,Cav_Serie,Cav_Numero,Cav_Fecha,Cav_Caja,Cav_Situa,Cav_Agente,"
      "Cav_IdFactura,Cav_NFiscal ORDER BY Cav_Fecha");
  using enum ui::Align;
  DbgDiario.Bind(*tickets, {{"", "", 0, Left, true, false},
                            {"Fecha", "DD/MM/YYYY HH:MM", 1500, Centre, false, false},
                            {"Numero", "", 1200, Left, false, false},
                            {"Caja", "", 600, Centre, false, false},
                            {"Vendedor", "", 1200, Centre, false, false},
                            {"Cliente", "", 4200, Left, false, false},
                            {"Ventas", "#,##0.00", 1100, Right, false, false, true}});
}

TicketInvoice FrmTpvFacturas::InvoiceTo(const CustomerRecord& customer,
                                        const InvoiceParameters& asked) const {
  TicketInvoice invoice;
  invoice.series = asked.series;
  invoice.date = asked.date;
  invoice.customer_id = customer.Id();
  invoice.customer_code = Parameter("Par_CliCon").TextOr("");
  invoice.customer_name = customer.Name();
  invoice.document = customer["Cli_doc"].TextOr("");
  invoice.payment_method = customer["Cli_Fco"].IntOr(0);
  invoice.observations = asked.observations;
  invoice.address.street_type = "CL";
  invoice.address.number = Variant(0);
  invoice.address.post_code = "00000";
  invoice.address.country = "011";
  invoice.address.province = "30";
  invoice.collected = true;
  invoice.in_portfolio = !asked.in_portfolio;
  invoice.tickets = tickets_;
  return invoice;
}

// What the operator must be told, "" when all went well.
std::string FrmTpvFacturas::StoreAndIssue(Object& invoicing, TicketInvoice invoice,
                                          ui::LongWork& work) {
  const ui::WaitCursor waiting(*this);
  invoice.check = [&] {
    work.Stage("Comprobando los tickets");
    RequireAsSeen(Database(), tickets_, seen_);
  };
  invoice.before_marking = [&] { work.Stage("Reuniendo las líneas de la factura"); };
  invoice.companion = [&] { work.LastStage("Grabando la factura"); };
  try {
    if (!StoreInvoice(context(), invoicing, invoice)) return kInvoiceFailed;
  } catch (const CommitUnknown& error) {
    return error.what();
  }
  work.LastStage("Preparando el papel de la factura");
  const IssuedInvoice issued = IssueInvoice(invoicing);
  const std::string reference = InvoiceReference(invoicing);
  if (!issued.error.empty()) return issued.error + "\r\nFactura " + reference;
  context().ports.ui.Notify({PaperNotice(reference, issued), {}});
  return {};
}

void FrmTpvFacturas::Invoice() {
  const InvoiceParameters asked = AskForInvoice(
      context(), "Factura de tickets del periodo " + from_ + " al " + to_, true);
  if (!asked.confirmed) return;
  const auto invoicing = CreateInvoicing(context());
  const auto customer = CustomerByCode(context(), Parameter("Par_CliCon").IntOr(0));
  if (!customer) {
    return Refuse("No está definido en parámetros el cliente contado", nullptr, Icon::Critical);
  }
  const std::string refusal = fiscal::InvoiceRefusal(
      fiscal::DeskOf(context()), {customer->Name(), (*customer)["Cli_doc"].TextOr("")});
  if (!refusal.empty()) return Refuse(refusal, nullptr, Icon::Critical);
  try {
    std::string error;
    const bool finished = Finishes(caption, [&](ui::LongWork& work) {
      error = StoreAndIssue(*invoicing, InvoiceTo(*customer, asked), work);
    });
    if (!finished) return;
    if (!error.empty()) Refuse(error, nullptr, Icon::Critical);
    Close();
  } catch (const InvoiceRefused& refused) {
    cmdFacturar.enabled = false;  // until they have been searched for again
    Refuse(refused.what(), &cmdInforme, Icon::Exclamation);
  }
}

}  // namespace tpv
