#include "reports/sales_journal_statements.h"

namespace tpv::journal {

namespace {

// A ticket's lines with tax, to the cent.
constexpr const char* kSaleAmount =
    "(SELECT ROUND(cast(sum(lav_Importe + (lav_Importe /100 * Tiva_iva)) as money),2) FROM Lav "
    "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva "
    "WHERE lav_idcav = cav_id ) ";

}  // namespace

std::string CountSales(const std::string& days) {
  return "SELECT COUNT(*) From Cav WHERE Cav_fecha " + days + "AND Cav_Ticket = 1";
}

std::string Sales(const std::string& days) {
  return std::string(
             "SELECT Cav_Id,Cav_Fecha, "
             "((CASE WHEN len(Cav_Serie)>0 THEN Cav_Serie + '/' ELSE '' END) + "
             "cast(Cav_Numero as varchar)) AS Ticket, "
             "Cav_Caja,Cav_AGente as Agente, Cav_NFiscal as Cliente, ") +
         kSaleAmount + "AS Venta, ( " + kSaleAmount +
         "  - ISNULL((SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id),0)) AS Pendiente "
         "FROM Cav "
         "INNER JOIN Lav ON Lav_IdCav = Cav_Id "
         "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva "
         "WHERE Cav_Fecha " + days + "AND Cav_Ticket = 1 "
         "GROUP BY Cav_Id,Cav_Serie,Cav_Numero,Cav_Fecha,Cav_Caja,Cav_Situa,Cav_Agente,"
         "Cav_IdFactura,Cav_NFiscal ORDER BY Cav_Fecha";
}

std::string CollectionTotals(const std::string& days) {
  return "SELECT ROUND(CAST(SUM(DiaCaj_Cobrado) AS MONEY),2) AS Cobros, "
         "ROUND(CAST(SUM(DiaCaj_Descuento) AS MONEY),2) AS Dtos, "
         "ROUND(CAST(Sum(DiaCaj_Entrega-DiaCaj_Devolucion) AS MONEY),2) AS Metalico,"
         "ROUND(CAST(Sum(DiaCaj_Tarjeta) AS MONEY),2) AS Tarjeta "
         "FROM DiaCaj WHERE DiaCaj_fecha " + days + " AND DiaCaj_Tipo IN ('1','2') ";
}

std::string Collections(const std::string& days) {
  return "SELECT DiaCaj_Fecha, CASE diacaj_tipo "
         "WHEN '1' then (SELECT (CASE WHEN len(Cav_Serie)>0 THEN Cav_Serie + '/' ELSE '' END) + "
         "cast(Cav_Numero as varchar) FROM Tco LEFT JOIN Cav ON Tco_IdCav = Cav_ID "
         "WHERE Tco_IdDiaCaj = DiaCaj_Id ) "
         "WHEN '2' then '' "
         "WHEN '3' then '' "
         "END AS Ticket, DiaCaj_Caja,DiaCaj_IdAge, CASE Diacaj_Tipo "
         "WHEN '1' then (SELECT Cav_NFiscal FROM Cav INNER JOIN Tco ON Tco_IdCav = Cav_Id "
         "WHERE Tco_IdDiaCaj = DiaCaj_Id) "
         "WHEN '2' then (SELECT TOP 1 Cav_NFiscal FROM Cav INNER JOIN Tco ON Tco_IdCav = Cav_Id "
         "WHERE Tco_IdDiaCaj = DiaCaj_Id) "
         "END AS Cliente, "
         "ROUND(CAST(DiaCaj_Entrega-DiaCaj_Devolucion AS MONEY),2) AS Metalico, "
         "ROUND(CAST(DiaCaj_Tarjeta AS MONEY),2) AS Tarjeta, "
         "ROUND(CAST(DiaCaj_Descuento AS MONEY),2) AS Descuento "
         "FROM DiaCaj WHERE DiaCaj_Fecha " + days + " AND DiaCaj_Tipo IN ('1','2') "
         " ORDER BY DiaCaj_Fecha";
}

std::string LinesOfTickets(const std::string& days) {
  return "SELECT Lav_IdCav, Lav_Uni, Lav_Des, "
         "ROUND(cast(lav_Importe + (lav_Importe /100 * Tiva_iva) as money),2) as Importe "
         "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
         "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Fecha " +
         days + "AND Cav_Ticket = 1 ORDER BY Lav_Id";
}

}  // namespace tpv::journal
