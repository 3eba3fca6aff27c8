// The lists' reads and the invoice's writes by hand on the engine, over the days
// from the first to the last.
#pragma once

#include "bench/direct_store.h"

namespace tpv::bench {

class DirectLists {
 public:
  DirectLists(DirectStore& store, const DateTime& first, const DateTime& last);

  void Pending();  // all customers', of whatever day
  void Closures();
  void Journal();
  void SearchPeriod();
  // The days of the list beside those.
  void Panel(const DateTime& first_before, const DateTime& last_before);
  void InvoicePeriod();
  // What was invoiced since the start is pending again.
  void Forget();

 private:
  DirectStore& store_;
  std::string from_;
  std::string to_;

  Prepared newest_invoice_{store_, "SELECT MAX(Fav_Id) FROM Fav"};
  const std::int64_t invoices_before_ = static_cast<std::int64_t>(newest_invoice_());
  Prepared all_pending_{store_,
                        "SELECT Cav_Id, Cav_NFiscal, CASE WHEN length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE "
                        "'' END || Cav_Numero, Cav_Fecha, (SELECT Age_Nom FROM Age WHERE Age_ID = Cav_Agente), "
                        "round(SUM(Lav_Importe + Lav_Importe / 100 * Tiva_iva), 2), ifnull((SELECT "
                        "SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id), 0), round(SUM(Lav_Importe + "
                        "Lav_Importe / 100 * Tiva_iva), 2) - ifnull((SELECT SUM(Tco_Importe) FROM Tco WHERE "
                        "Tco_IdCav = Cav_Id), 0) FROM Cav JOIN Lav ON Lav_IdCav = Cav_Id JOIN tivas ON "
                        "Tiva_Id = Lav_Tiva WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0 GROUP BY Cav_Id, Cav_Serie, "
                        "Cav_Numero, Cav_Fecha, Cav_Caja, Cav_Situa, Cav_Agente, Cav_IdFactura, Cav_NFiscal "
                        "ORDER BY Cav_Fecha"};
  Prepared closures_{store_,
                     "SELECT DiaCaj_Id, DiaCaj_Fecha, (SELECT Age_Nom FROM Age WHERE Age_ID = DiaCaj_IdAge), "
                     "DiaCaj_Caja, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret, "
                     "DiaCaj_SaldoIni + DiaCaj_CobMet - DiaCaj_Pagos - DiaCaj_Ret FROM DiaCaj WHERE DiaCaj_Tipo "
                     "= 9 AND DiaCaj_Fecha BETWEEN ? AND ? ORDER BY DiaCaj_Fecha DESC"};
  Prepared count_{store_, "SELECT COUNT(*) FROM Cav WHERE Cav_Fecha BETWEEN ? AND ? AND Cav_Ticket = 1"};
  Prepared lines_{store_,
                  "SELECT Lav_Importe, Tiva_iva FROM Cav JOIN Lav ON Lav_IdCav = Cav_Id JOIN "
                  "tivas ON Tiva_Id = Lav_Tiva WHERE Cav_Fecha BETWEEN ? AND ? AND Cav_Ticket = 1"};
  Prepared sales_{store_,
                  "SELECT Cav_Id, Cav_Fecha, CASE WHEN length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE '' "
                  "END || Cav_Numero, Cav_Caja, Cav_Agente, Cav_NFiscal, (SELECT round(SUM(Lav_Importe + "
                  "Lav_Importe / 100 * Tiva_iva), 2) FROM Lav JOIN tivas ON Tiva_Id = Lav_Tiva WHERE "
                  "Lav_IdCav = Cav_Id), (SELECT round(SUM(Lav_Importe + Lav_Importe / 100 * Tiva_iva), 2) FROM "
                  "Lav JOIN tivas ON Tiva_Id = Lav_Tiva WHERE Lav_IdCav = Cav_Id) - ifnull((SELECT "
                  "SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id), 0) FROM Cav JOIN Lav ON Lav_IdCav = "
                  "Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva WHERE Cav_Fecha BETWEEN ? AND ? AND "
                  "Cav_Ticket = 1 GROUP BY Cav_Id, Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Caja, Cav_Situa, "
                  "Cav_Agente, Cav_IdFactura, Cav_NFiscal ORDER BY Cav_Fecha"};
  Prepared collected_{store_,
                      "SELECT round(SUM(DiaCaj_Cobrado), 2), round(SUM(DiaCaj_Descuento), 2), "
                      "round(SUM(DiaCaj_Entrega - DiaCaj_Devolucion), 2), round(SUM(DiaCaj_Tarjeta), 2) FROM "
                      "DiaCaj WHERE DiaCaj_Fecha BETWEEN ? AND ? AND DiaCaj_Tipo IN (1, 2)"};
  Prepared collections_{store_,
                        "SELECT DiaCaj_Fecha, CASE DiaCaj_Tipo WHEN 1 THEN (SELECT CASE WHEN "
                        "length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE '' END || Cav_Numero FROM Tco LEFT "
                        "JOIN Cav ON Tco_IdCav = Cav_Id WHERE Tco_IdDiaCaj = DiaCaj_Id) ELSE '' END, "
                        "DiaCaj_Caja, DiaCaj_IdAge, (SELECT Cav_NFiscal FROM Cav JOIN Tco ON Tco_IdCav = "
                        "Cav_Id WHERE Tco_IdDiaCaj = DiaCaj_Id LIMIT 1), round(DiaCaj_Entrega - "
                        "DiaCaj_Devolucion, 2), round(DiaCaj_Tarjeta, 2), round(DiaCaj_Descuento, 2) FROM "
                        "DiaCaj WHERE DiaCaj_Fecha BETWEEN ? AND ? AND DiaCaj_Tipo IN (1, 2) ORDER BY "
                        "DiaCaj_Fecha"};
  Prepared sold_{store_,
                 "SELECT Cav_Id, Cav_Fecha, Cav_Caja, Cav_Agente, Lav_Idart, Lav_Uni, Lav_Importe, Tiva_iva FROM Cav "
                 "JOIN Lav ON Lav_IdCav = Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva WHERE Cav_Fecha BETWEEN ? AND ? AND "
                 "Cav_Ticket = 1 ORDER BY Cav_Fecha, Cav_Id, Lav_Id"};
  Prepared owed_{store_,
                 "SELECT Cav_Fecha, round(SUM(Lav_Importe + Lav_Importe / 100 * Tiva_iva), 2) - ifnull((SELECT "
                 "SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id), 0) FROM Cav JOIN Lav ON Lav_IdCav = Cav_Id "
                 "JOIN tivas ON Tiva_Id = Lav_Tiva WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0 GROUP BY Cav_Id"};
  Prepared stock_{store_,
                  "SELECT exis_idart, SUM(exis_uni) FROM Exis WHERE exis_idart IN (SELECT Lav_Idart FROM Cav JOIN Lav "
                  "ON Lav_IdCav = Cav_Id WHERE Cav_Fecha BETWEEN ? AND ?) GROUP BY exis_idart"};
  Prepared pending_count_{store_, "SELECT COUNT(*) FROM Cav WHERE Cav_Fecha BETWEEN ? AND ? AND "
                                  "Cav_Ticket = 1 AND Cav_Situa = 1"};
  Prepared pending_{store_,
                    "SELECT Cav_Id, Cav_Fecha, CASE WHEN length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE '' "
                    "END || Cav_Numero, Cav_Caja, Cav_Agente, Cav_NFiscal, round(SUM(Lav_Importe + "
                    "Lav_Importe / 100 * Tiva_iva), 2) FROM Cav JOIN Lav ON Lav_IdCav = Cav_Id JOIN "
                    "tivas ON Tiva_Id = Lav_Tiva WHERE Cav_Fecha BETWEEN ? AND ? AND Cav_Ticket = 1 "
                    "AND Cav_Situa = 1 GROUP BY Cav_Id, Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Caja, "
                    "Cav_Situa, Cav_Agente, Cav_IdFactura, Cav_NFiscal ORDER BY Cav_Fecha"};
  Prepared insert_invoice_{store_, "INSERT INTO Fav (Fav_Serie, Fav_Numero, Fav_Fecha) VALUES ('D', 1, ?)"};
  Prepared mark_{store_, "UPDATE Cav SET Cav_Situa = 2, Cav_IdFactura = ? WHERE Cav_Fecha BETWEEN ? AND ? "
                         "AND Cav_Ticket = 1 AND Cav_Situa = 1"};
  Prepared gather_{store_,
                   "INSERT INTO Fal (Fal_IdFav, Fal_IdCav, Fal_Ticket, Fal_Fecha, Fal_CodArt, Fal_Des, "
                   "Fal_Uni, Fal_Precio, Fal_Dto1, Fal_Importe, Fal_Iva, Fal_Total) SELECT ?1, Cav_Id, CASE "
                   "WHEN length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE '' END || Cav_Numero, Cav_Fecha, "
                   "Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, Lav_Importe, Tiva_iva, "
                   "round(Lav_Importe + Lav_Importe / 100 * Tiva_iva, 2) FROM Cav JOIN Lav ON Lav_IdCav = "
                   "Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva WHERE Cav_IdFactura = ?1 ORDER BY "
                   "Cav_Fecha, Cav_Id, Lav_Id"};
  Prepared total_{store_, "SELECT SUM(Fal_Total) FROM Fal WHERE Fal_IdFav = ?"};
  Prepared rates_{store_,
                  "INSERT INTO Fai (Fai_IdFav, Fai_Iva, Fai_Base, Fai_Cuota) SELECT ?1, Fal_Iva, "
                  "round(SUM(Fal_Importe), 2), round(SUM(Fal_Total) - SUM(Fal_Importe), 2) FROM Fal WHERE "
                  "Fal_IdFav = ?1 GROUP BY Fal_Iva"};
  Prepared insert_due_{store_, "INSERT INTO Vto (Vto_IdFav, Vto_Orden, Vto_Importe) VALUES (?, 1, ?)"};
  Prepared unmark_{store_, "UPDATE Cav SET Cav_Situa = 1, Cav_IdFactura = 0 WHERE Cav_IdFactura > ?"};
  Prepared forget_invoice_{store_, "DELETE FROM Fav WHERE Fav_Id > ?"};
  Prepared forget_lines_{store_, "DELETE FROM Fal WHERE Fal_IdFav > ?"};
  Prepared forget_rates_{store_, "DELETE FROM Fai WHERE Fai_IdFav > ?"};
  Prepared forget_due_{store_, "DELETE FROM Vto WHERE Vto_IdFav > ?"};
  Prepared paper_{store_, "SELECT * FROM Fal WHERE Fal_IdFav = ? ORDER BY Fal_Id"};
};

}  // namespace tpv::bench
