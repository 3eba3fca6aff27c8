#include "host/left_sales.h"

#include "base/number_text.h"
#include "data/sales_in_progress.h"
#include "data/sql_text.h"
#include "fiscal/issuing.h"
#include "host/machine.h"

namespace tpv {

std::string SalesInProgressText(Connection& connection) {
  std::string text;
  for (const SaleInProgress& sale : SalesInProgressAmong(connection, "")) {
    text += std::to_string(sale.sale) + " " + Described(sale) +
            (sale.Parked() ? ", aparcada" : ", caja " + std::to_string(sale.till)) + ", vendedor " + std::to_string(sale.agent) + "\n";
  }
  return text.empty() ? "No hay ventas en curso\n" : text;
}

std::string ReleaseSale(Connection& connection, std::int32_t sale_id) {
  Transaction transaction(connection);
  const auto sale = SaleInProgressOf(connection, sale_id);
  if (!sale) throw DatabaseError("No hay ninguna venta en curso con ese número interno");
  const std::string id = sql::Number(std::int64_t{sale_id});
  if (sale->Parked()) {  // a pending ticket is of the till that sold it
    const auto till = connection.Execute("SELECT Cav_Ref FROM Cav WHERE Cav_Id = " + id);
    HandSaleTo(connection, *sale, Int32OrZero(till->Field(0).TextOr("")));
  }
  UnregisterSale(connection, sale_id);
  const bool empty =
      connection.Execute("SELECT TOP 1 Lav_Id FROM Lav WHERE Lav_IdCav = " + id)->Eof();
  if (empty) connection.Execute("DELETE FROM Cav WHERE Cav_Id = " + id);
  const auto digest = MakeDigest();
  fiscal::RecordTicket(fiscal::DeskOf(connection, digest.get()), sale_id);
  transaction.Commit();
  return empty ? "La venta no tenía líneas: eliminada\n"
               : "La venta queda como un ticket pendiente de cobro\n";
}

}  // namespace tpv
