#include "cash/closure_ticket.h"

#include <algorithm>

#include "base/mask.h"
#include "base/rounding.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "output/ticket_text.h"
#include "platform/database.h"
#include "platform/printer.h"

namespace tpv {

namespace {

constexpr const char* kAgentName = "(SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) as Agente, ";

std::string Rule(char c) { return std::string(kTicketWidth, c); }

double Euros(const Recordset& row, std::string_view field) { return row.Field(field).NumberOr(0); }

}  // namespace

ClosureTicket::ClosureTicket(Context& context, std::int32_t closure_id)
    : context_(context), id_(sql::Number(std::int64_t{closure_id})) {}

void ClosureTicket::Line(const std::string& text) { lines_.push_back(OneLine(text)); }

void ClosureTicket::AmountLine(const char* label, double euros) {
  const std::string amount = Amount9(euros);
  const std::size_t room = kTicketWidth - std::min(kTicketWidth, Length(amount));
  Line(Right32(Left(label, room) + amount));
}

void ClosureTicket::Compose() {
  const auto closure =
      context_.Database().Execute("SELECT * FROM DiaCaj WHERE DiaCaj_Id = " + id_);
  ComposeBalances(*closure);
  if (Euros(*closure, "DiaCaj_Pagos") != 0) ComposePayments();
  ComposeSales();
}

void ClosureTicket::ComposeBalances(const Recordset& closure) {
  const double initial = Euros(closure, "DiaCaj_SaldoIni");
  const double cash = Euros(closure, "DiaCaj_CobMet");
  const double paid = Euros(closure, "DiaCaj_Pagos");
  const double withdrawn = Euros(closure, "DiaCaj_Ret");
  Line(context_.Parameter("Par_Nombre").TextOr(""));
  Line("Cierre de caja Nº " + id_ + " - Caja: " + closure.Field("DiaCaj_Caja").TextOr(""));
  Line("Fecha... " + Format(closure.Field("DiaCaj_Fecha"), "DD/MM/YYYY HH:MM"));
  Line("Vendedor " + closure.Field("DiaCaj_IdAge").TextOr(""));
  AmountLine("Saldo Inicial.........", initial);
  AmountLine("Cobrado en metálico...", cash);
  AmountLine("Cobrado con tarjeta...", Euros(closure, "DiaCaj_CobTar"));
  AmountLine("Pagado en metalico....", paid);
  AmountLine("Retirado..............", withdrawn);
  AmountLine("Saldo Final...........", RoundHalfAway(initial + cash - paid - withdrawn, 2));
}

void ClosureTicket::Banner(const char* title) {
  Line(" ");
  Line(Rule('*'));
  Line(title);
  Line(Rule('*'));
}

void ClosureTicket::EventHeader(const std::string& number, const Recordset& row) {
  Line(Rule('-'));
  Line(PadRight("Nº " + number + " Fecha: " + Format(row.Field("DiaCaj_Fecha"), "DD-MM-YY HH:nn"),
                kTicketWidth));
}

void ClosureTicket::ComposePayments() {
  const auto payments = context_.Database().Execute(
      "SELECT DiaCaj_Fecha," + std::string(kAgentName) +
      "DiaCaj_Obs,DiaCaj_Cobrado,DiaCaj_id FROM DiaCaj "
      "Where DiaCaj_Tipo=3 and DiaCaj_idCierre = " + id_ + " ORDER BY DiaCaj_Fecha asc");
  Banner("*      Desglose de Pagos      *");
  for (; !payments->Eof(); payments->MoveNext()) {
    EventHeader(payments->Field("DiaCaj_id").TextOr(""), *payments);
    Line(DescriptionAndAmount(payments->Field("DiaCaj_Obs").TextOr(""),
                              Euros(*payments, "DiaCaj_Cobrado")));
  }
}

void ClosureTicket::ComposeSales() {
  const auto sold = context_.Database().Execute(
      "SELECT DiaCaj_Fecha," + std::string(kAgentName) +
      "((CASE WHEN len(Cav_Serie)>0 THEN Cav_Serie + '/' ELSE '' END) + "
      "cast(Cav_Numero as varchar)) AS Ticket, "
      "Lav_uni, lav_des,dbo.FncImporteConIva(Lav_id) AS Venta "
      "FROM DiaCaj left join TCO on Tco_IdDiaCaj = DiaCaj_Id LEFT JOIN Cav ON Tco_IdCav = Cav_ID "
      "INNER JOIN Lav ON Lav_IdCav = Cav_Id  "
      "Where DiaCaj_idCierre = " + id_ + " ORDER BY DiaCaj_Fecha asc,Ticket");
  Banner("*      Desglose de ventas      *");
  std::string previous;
  for (bool first = true; !sold->Eof(); sold->MoveNext(), first = false) {
    const std::string ticket = Trim(sold->Field("Ticket").TextOr(""));
    if (first || ticket != previous) EventHeader(ticket, *sold);
    previous = ticket;
    Line(DescriptionAndAmount(sold->Field("lav_des").TextOr(""), Euros(*sold, "Venta")));
  }
}

void ClosureTicket::Print() const {
  const auto document = context_.ports.printers.Begin("Cierre de caja Nº " + id_);
  document->SetFont("Courier New", 10, true);
  document->SetY(0);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (i == 1) document->SetFont("Courier New", 9, false);
    PrintTextLine(*document, lines_[i]);
    CloseGap(*document);
  }
  document->End();
}

std::string ClosureTicket::Text() const {
  std::string text;
  for (const std::string& line : lines_) text.append(line).append(kLineBreak);
  return text;
}

}  // namespace tpv
