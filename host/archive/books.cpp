#include "host/archive/books.h"

#include "adapters/sqlite/store_file.h"
#include "platform/database.h"

namespace tpv::archive {

namespace {

// Amounts in whole cents, so that the order of adding does not count.
constexpr const char* kBooks[] = {
    "SELECT 'la deuda del cliente' AS Que, Cav_IdCli AS Cual, SUM(CAST(round(100 * ((SELECT total(Lav_Importe + "
    "Lav_Importe / 100 * Tiva_iva) FROM main.Lav JOIN main.tivas ON Tiva_Id = Lav_Tiva WHERE Lav_IdCav = Cav_Id) - "
    "(SELECT total(Tco_Importe) FROM main.Tco WHERE Tco_IdCav = Cav_Id))) AS INTEGER)) AS Valor FROM main.Cav WHERE "
    "Cav_Cobrado = 0 AND Cav_Ticket = 1 GROUP BY Cav_IdCli",
    "SELECT 'el estado de la caja', Caja, (SELECT DiaCaj_Id || ' ' || DiaCaj_Tipo FROM main.DiaCaj WHERE DiaCaj_Caja = "
    "Caja ORDER BY DiaCaj_Fecha DESC LIMIT 1) FROM temp.Cajas",
    "SELECT 'el saldo de la caja', Caja, (SELECT DiaCaj_Id || ' ' || (DiaCaj_SaldoIni + DiaCaj_CobMet - DiaCaj_Pagos - "
    "DiaCaj_Ret) FROM main.DiaCaj WHERE DiaCaj_Caja = Caja AND DiaCaj_Tipo = 9 ORDER BY DiaCaj_Fecha DESC LIMIT 1) FROM "
    "Cajas",
    "SELECT 'lo que falta por cerrar de la caja', DiaCaj_Caja, CAST(round(100 * total(DiaCaj_Entrega)) AS INTEGER) || ' ' "
    "|| CAST(round(100 * total(DiaCaj_Devolucion)) AS INTEGER) || ' ' || CAST(round(100 * total(DiaCaj_Tarjeta)) AS "
    "INTEGER) || ' ' || COUNT(*) FROM main.DiaCaj WHERE DiaCaj_IdCierre = 0 AND DiaCaj_Tipo IN (1, 2, 3) GROUP BY "
    "DiaCaj_Caja",
    "SELECT 'el número siguiente de la serie', cont_tipo || ' ' || cont_serie, max(cont_numero, ifnull(CASE cont_tipo "
    "WHEN 'ALBVENTA' THEN (SELECT MAX(Cav_Numero) FROM main.Cav WHERE Cav_Serie = cont_serie) END, 0)) FROM "
    "main.Contadores",
    "SELECT 'el número interno siguiente de', name, seq FROM main.sqlite_sequence WHERE name <> 'Archivos'",
    "SELECT 'el último registro de facturación', MAX(Fis_Id), (SELECT Fis_Huella FROM main.Fiscal ORDER BY Fis_Id DESC "
    "LIMIT 1) FROM main.Fiscal",
    "SELECT 'las existencias del almacén', exis_idalma, COUNT(*) || ' ' || CAST(round(1000 * total(exis_uni)) AS INTEGER) "
    "FROM main.Exis GROUP BY exis_idalma",
    "SELECT 'el cierre', c.Id, ifnull(n, 0) + ifnull(Arc_Apuntes, 0) || ' ' || (ifnull(m, 0) + CAST(round(100 * "
    "ifnull(Arc_Metalico, 0)) AS INTEGER)) || ' ' || (ifnull(t, 0) + CAST(round(100 * ifnull(Arc_Tarjeta, 0)) AS "
    "INTEGER)) || ' ' || (ifnull(p, 0) + CAST(round(100 * ifnull(Arc_Pagos, 0)) AS INTEGER)) FROM temp.Cierres AS c LEFT "
    "JOIN main.ArchivoCierres ON Arc_IdCierre = c.Id LEFT JOIN (SELECT DiaCaj_IdCierre AS i, COUNT(*) AS n, "
    "CAST(round(100 * total(CASE WHEN DiaCaj_Tipo <> 3 THEN ifnull(DiaCaj_Entrega, 0) - ifnull(DiaCaj_Devolucion, 0) "
    "END)) AS INTEGER) AS m, CAST(round(100 * total(CASE WHEN DiaCaj_Tipo <> 3 THEN DiaCaj_Tarjeta END)) AS INTEGER) AS "
    "t, CAST(round(100 * total(CASE WHEN DiaCaj_Tipo = 3 THEN DiaCaj_Entrega END)) AS INTEGER) AS p FROM main.DiaCaj "
    "WHERE DiaCaj_Tipo IN (1, 2, 3) AND DiaCaj_IdCierre IN (SELECT Id FROM temp.Cierres) GROUP BY DiaCaj_IdCierre) ON i "
    "= c.Id"};

std::string AllBooks() {
  std::string all;
  for (const char* book : kBooks) all.append(all.empty() ? "" : " UNION ALL ").append(book);
  return all;
}

}  // namespace

Books::Books(sqlite3* store) : store_(store) {
  sqlite::Run(store_, "CREATE TEMP TABLE Cajas AS SELECT DISTINCT DiaCaj_Caja AS Caja FROM main.DiaCaj; CREATE TEMP VIEW "
                      "Libros AS " + AllBooks());
}

void Books::Note() { sqlite::Run(store_, "DROP TABLE IF EXISTS temp.Antes; CREATE TEMP TABLE Antes AS SELECT * FROM temp.Libros"); }

void Books::RequireSame() const {
  constexpr const char* kDifferent =
      "SELECT Que || ' ' || ifnull(Cual, '') FROM (SELECT * FROM (SELECT * FROM temp.Antes EXCEPT SELECT * FROM "
      "temp.Libros) UNION ALL SELECT * FROM (SELECT * FROM temp.Libros EXCEPT SELECT * FROM temp.Antes)) LIMIT 1";
  const std::string different = sqlite::Text(store_, kDifferent);
  if (different.empty()) return;
  throw DatabaseError("No se ha archivado: habría cambiado " + different + ". Llame a soporte");
}

}  // namespace tpv::archive
