#include "data/statements.h"

#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv {

std::string PendingTickets::Select() const {
  std::string sql = "SELECT Cav_Id,";
  if (with_name) sql += "Cav_NFiscal,";
  if (with_ticket) {
    sql.append(kTicketReference) +=
        " as Ticket, Cav_Fecha, (SELECT Age_Nom FROM Age WHERE Age_ID = Cav_AGente) as Agente, ";
  }
  sql.append(kAmountWithTax).append(" as total, ");
  sql.append(kAmountCollected).append(" AS Cobrado, ");
  sql.append(kAmountWithTax).append(" - ").append(kAmountCollected).append(" AS Pendiente ");
  sql +=
      "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva "
      "WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0 " +
      filter +
      " GROUP BY Cav_Id,Cav_Serie,Cav_Numero,Cav_Fecha,Cav_Caja,Cav_Situa,Cav_Agente,"
      "Cav_IdFactura,Cav_NFiscal";
  if (!order.empty()) sql.append(" ").append(order);
  return sql;
}

std::string BetweenDays(std::string_view from, std::string_view to) {
  return "between '" + sql::DateText(from) + " 00:00:00' AND '" + sql::DateText(to) +
         " 23:59:59' ";
}

std::string SoldLines(const std::string& days) {
  return "SELECT Lav_Importe,Tiva_Iva From Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
         "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_fecha " +
         days + "AND Cav_Ticket = 1";
}

std::map<std::int32_t, std::string> AgentNames(Connection& connection) {
  std::map<std::int32_t, std::string> names;
  const auto rows = connection.Execute("SELECT Age_ID,Age_NOM FROM Age");
  for (; !rows->Eof(); rows->MoveNext()) names[rows->Field(0).ToInt32()] = rows->Field(1).TextOr("");
  return names;
}

std::string OfCustomer(std::int32_t customer_id) {
  return " AND Cav_IdCli = " + sql::Number(std::int64_t{customer_id});
}

SaleTotals ReadSaleTotals(Connection& connection, std::int32_t sale_id) {
  const auto sums = connection.Execute(
      "select Sum(Lav_Importe) as Bases, sum(dbo.FncImporteConIva(lav_id)) as Totales "
      "From Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "WHERE Cav_Id = " +
      sql::Number(std::int64_t{sale_id}));
  if (sums->Eof()) return {};
  return {sums->Field("Bases").NumberOr(0), sums->Field("Totales").NumberOr(0)};
}

}  // namespace tpv
