#include "invoicing/seen_tickets.h"

#include "data/sales_in_progress.h"
#include "invoicing/ticket_invoice.h"

namespace tpv {

std::string MarkOfTickets(Connection& connection, const std::string& tickets) {
  std::string mark;
  for (const char* select :
       {"SELECT COUNT(*) AS Ventas, MAX(Cav_Id) AS Ultima, 0 AS Importe FROM Cav",
        "SELECT COUNT(*) AS Lineas, MAX(Lav_Id) AS Ultima, "
        "ROUND(cast(SUM(Lav_Importe) as money),2) AS Importe "
        "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id"}) {
    const auto row = connection.Execute(select + tickets);
    for (std::size_t field = 0; field < 3; ++field) mark += row->Field(field).ToPlainText() + "/";
  }
  return mark;
}

void RequireAsSeen(Connection& connection, const std::string& tickets, const std::string& mark) {
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
  if (MarkOfTickets(connection, tickets) == mark) return;
  throw InvoiceRefused(
      "Los tickets del periodo han cambiado desde la búsqueda. Búsquelos otra vez antes de facturar");
}

}  // namespace tpv
