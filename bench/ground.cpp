#include "bench/ground.h"

#include "bench/direct_store.h"

namespace tpv::bench {

void AddCommonGround(const std::string& path, const Clock& clock) {
  DirectStore store(path, clock);
  store.Run("BEGIN IMMEDIATE");
  Prepared tickets(
      store,
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?1), "
      "has(open) AS MATERIALIZED (SELECT COUNT(*) FROM Cav WHERE Cav_Ticket = 1 AND Cav_Cobrado = "
      "0) "
      "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Caja, Cav_Agente, Cav_IdCli, "
      "Cav_NFiscal, Cav_Ticket, Cav_Cobrado) SELECT 'V', i, '1989-01-02 10:00:00.000', 1, 1, "
      "2 + i % 40, 'CLIENTE', 1, 0 FROM n, has WHERE i <= ?1 - open");
  tickets(kOpenTickets);
  store.Run(
      "INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, "
      "Lav_Importe, Lav_Tiva) SELECT Cav_Id, column1, '000' || column1, 'Leche entera 1 l', 1, "
      "0.92, "
      "0, 0.92, 3 FROM Cav, (VALUES (1), (2), (3), (4), (5)) WHERE Cav_Serie = 'V'");
  Prepared debts(
      store,
      "UPDATE Cav SET Cav_IdCli = ? WHERE Cav_Id IN (SELECT Cav_Id FROM Cav WHERE Cav_Ticket = 1 "
      "AND Cav_Cobrado = 0 ORDER BY Cav_Id LIMIT 20)");
  debts(kDebtor);
  Prepared closures(
      store,
      "WITH RECURSIVE d(day) AS (SELECT ?1 UNION ALL SELECT date(day, '+1 day') FROM d WHERE day "
      "< ?2) INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, "
      "DiaCaj_IdCliPr, DiaCaj_Tipo, DiaCaj_Modo, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, "
      "DiaCaj_Pagos, DiaCaj_Ret) SELECT day || ' 20:00:00.000', column1, 1, 1 + column1, 0, 9, 1, "
      "100, 900, 800, 20, 880 FROM d, (VALUES (1), (2), (3))");
  closures(std::string(kClosuresFrom), std::string(kClosuresTo));
  store.Run("COMMIT");
}

}  // namespace tpv::bench
