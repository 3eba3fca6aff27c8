#include "invoicing/seen_tickets.h"

#include <cmath>

#include "data/sales_in_progress.h"
#include "data/statements.h"
#include "invoicing/ticket_invoice.h"
#include "platform/database.h"
#include "platform/ui/lists.h"

namespace tpv {

namespace {

constexpr double kHalfCent = 0.005;

bool AreAsSeen(Connection& connection, const std::string& tickets, const SeenTickets& seen) {
  if (seen.mark && seen.mark == connection.ChangeMark()) return true;
  const auto now = connection.Execute(
      "SELECT COUNT(*) AS Ventas, SUM(cast(Cav_Id as float)) AS Numeros, SUM(Importe) AS Importe, MAX(Ultima) AS Ultima "
      "FROM (SELECT Cav_Id, " + std::string(kAmountWithTax) + " AS Importe, MAX(Lav_Id) AS Ultima "
      "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva" +
      tickets + " GROUP BY Cav_Id,Cav_Fecha) AS Vistas");
  return now->Field("Ventas").NumberOr(0) == seen.count && now->Field("Numeros").NumberOr(0) == seen.ids &&
         std::fabs(now->Field("Importe").NumberOr(0) - seen.amount) < kHalfCent &&
         now->Field("Ultima").IntOr(0) <= seen.newest_line;
}

}  // namespace

SeenTickets AboutToSee(Connection& connection) {
  SeenTickets seen;
  seen.mark = connection.ChangeMark();
  seen.newest_line = connection.Execute("SELECT MAX(Lav_Id) FROM Lav")->Field(0).IntOr(0);
  return seen;
}

void See(SeenTickets& seen, const ui::Grid& list) {
  const auto id = static_cast<std::size_t>(list.Column("Cav_Id"));
  const auto total = static_cast<std::size_t>(list.Column("total"));
  for (const auto& row : list.rows) {
    ++seen.count;
    seen.ids += row[id].NumberOr(0);
    seen.amount += row[total].NumberOr(0);
  }
}

void RequireAsSeen(Connection& connection, const std::string& tickets, const SeenTickets& seen) {
  const auto in_progress = SalesInProgressAmong(connection, tickets);
  if (!in_progress.empty()) {
    const SaleInProgress& sale = in_progress.front();
    if (sale.Parked()) {
      throw InvoiceRefused("Hay una venta aparcada en ese periodo (" + Described(sale) +
                           "). Recupérela y termínela o cancélela antes de facturar");
    }
    throw InvoiceRefused("La caja " + std::to_string(sale.till) +
                         " tiene una venta en curso en ese periodo (" + Described(sale) +
                         "). Termínela o cancélela antes de facturar");
  }
  if (AreAsSeen(connection, tickets, seen)) return;
  throw InvoiceRefused(
      "Los tickets del periodo han cambiado desde la búsqueda. Búsquelos otra vez antes de facturar");
}

}  // namespace tpv
