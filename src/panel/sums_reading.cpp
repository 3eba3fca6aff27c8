#include "panel/sums.h"

#include "base/rounding.h"
#include "data/statements.h"
#include "panel/euros.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

namespace {

// The lines of tickets, as the journal joins them.
std::string OfTickets(const Days& days) {
  return "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
         "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Fecha " +
         days.Between() + "AND Cav_Ticket = 1 ";
}

// Adds up as the rows come. A ticket is rounded once, as money of four decimals and then to
// cents: what the journal's own expression does in the store.
class Adder {
 public:
  Adder(Sums& sums, const LineTax& tax_of) : sums_(sums), tax_of_(tax_of) {}

  void Add(Recordset& row) {
    enum Column : std::size_t { kTicket, kDate, kTill, kSeller, kArticle, kUnits, kAmount, kRate };
    const std::int32_t ticket = row.Field(kTicket).ToInt32();
    if (ticket != ticket_) {
      EndTicket();
      ticket_ = ticket;
      const DateTime when = row.Field(kDate).ToDate();
      group_ = {StartOfDay(when), when.hour, row.Field(kTill).IntOr(0), row.Field(kSeller).IntOr(0)};
    }
    const Variant amount = row.Field(kAmount);
    const Variant rate = row.Field(kRate);
    const LineGroup line{row.Field(kArticle).IntOr(0), rate.NumberOr(0), amount.NumberOr(0), 1,
                         row.Field(kUnits).NumberOr(0)};
    if (!amount.IsNull() && !rate.IsNull()) exact_ += line.amount + line.amount / 100 * line.rate;
    sums_.Add(line, tax_of_);
  }

  void EndTicket() {
    if (ticket_ == 0) return;
    group_.sold = ToCents(RoundAsEngine(RoundAsEngine(exact_, 4), 2));
    sums_.Add(group_);
    exact_ = 0;
  }

 private:
  Sums& sums_;
  const LineTax& tax_of_;
  std::int32_t ticket_ = 0;
  TicketGroup group_;
  double exact_ = 0;  // euros of the ticket so far
};

// The lines of tickets together, each ticket's in the order they were keyed.
void AddRows(Connection& connection, const Days& days, const LineTax& tax_of, Sums& sums) {
  Adder adder(sums, tax_of);
  const auto lines = connection.Execute(
      "SELECT Cav_Id,Cav_Fecha,Cav_Caja,Cav_Agente,Lav_Idart,Lav_Uni,Lav_Importe,Tiva_Iva " + OfTickets(days) +
      "ORDER BY Cav_Fecha,Cav_Id,Lav_Id");
  for (; !lines->Eof(); lines->MoveNext()) {
    Pulse();
    adder.Add(*lines);
  }
  adder.EndTicket();
}

void AddTicketGroups(Connection& connection, const Days& days, Sums& sums) {
  const auto rows = connection.Execute(
      "SELECT Anno,Mes,Dia,Hora,Cav_Caja,Cav_Agente,COUNT(*),SUM(Venta) FROM (SELECT YEAR(Cav_Fecha) AS Anno,"
      "MONTH(Cav_Fecha) AS Mes,DAY(Cav_Fecha) AS Dia,DATEPART(hour,Cav_Fecha) AS Hora,Cav_Caja,Cav_Agente," +
      std::string(kAmountWithTax) + " AS Venta " + OfTickets(days) +
      "GROUP BY Cav_Id,Cav_Fecha,Cav_Caja,Cav_Agente) AS Tickets GROUP BY Anno,Mes,Dia,Hora,Cav_Caja,Cav_Agente");
  for (; !rows->Eof(); rows->MoveNext()) {
    Pulse();
    const auto number = [&](std::size_t column) { return rows->Field(column).IntOr(0); };
    sums.Add({DateTime{number(0), number(1), number(2)}, number(3), number(4), number(5), number(6),
              ToCents(rows->Field(7).NumberOr(0))});
  }
}

// Lines of one amount have one tax.
void AddLineGroups(Connection& connection, const Days& days, const LineTax& tax_of, Sums& sums) {
  const auto rows =
      connection.Execute("SELECT Lav_Idart,Tiva_Iva,Lav_Importe,COUNT(*),SUM(Lav_Uni) " + OfTickets(days) +
                         "GROUP BY Lav_Idart,Tiva_Iva,Lav_Importe");
  for (; !rows->Eof(); rows->MoveNext()) {
    Pulse();
    sums.Add({rows->Field(0).IntOr(0), rows->Field(1).NumberOr(0), rows->Field(2).NumberOr(0),
              rows->Field(3).IntOr(0), rows->Field(4).NumberOr(0)},
             tax_of);
  }
}

// The journal's totals of collections before they are rounded, so that months add up to a year.
void AddCollections(Connection& connection, const Days& days, Sums& sums) {
  const auto totals = connection.Execute(
      "SELECT SUM(DiaCaj_Entrega-DiaCaj_Devolucion), SUM(DiaCaj_Tarjeta), SUM(DiaCaj_Descuento) FROM DiaCaj "
      "WHERE DiaCaj_fecha " + days.Between() + " AND DiaCaj_Tipo IN ('1','2') ");
  if (totals->Eof()) return;
  sums.cash = ToMicros(totals->Field(0).NumberOr(0));
  sums.card = ToMicros(totals->Field(1).NumberOr(0));
  sums.discounts = ToMicros(totals->Field(2).NumberOr(0));
}

}  // namespace

Sums ReadSums(Connection& connection, const Days& days, const LineTax& tax_of) {
  Sums sums;
  const bool in_reach = connection.Months() != nullptr;
  if (in_reach) {
    AddRows(connection, days, tax_of, sums);
  } else {
    AddTicketGroups(connection, days, sums);
    AddLineGroups(connection, days, tax_of, sums);
  }
  AddCollections(connection, days, sums);
  return sums;
}

}  // namespace tpv::panel
