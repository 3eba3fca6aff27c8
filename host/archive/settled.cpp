#include "host/archive/settled.h"

#include "adapters/sqlite/store_file.h"

namespace tpv::archive {

namespace {

std::string OldTicket(const std::string& alias, const std::string& day) {
  return alias + ".Cav_Ticket = 1 AND " + alias + ".Cav_Fecha < '" + day + "'";
}

// Still owed, or still being sold.
std::string Unfinished(const std::string& day) {
  return "SELECT t.Cav_Id FROM main.Cav AS t WHERE " + OldTicket("t", day) +
         " AND (t.Cav_Cobrado <> 1 OR EXISTS (SELECT 1 FROM main.VentasEnCurso WHERE Vec_IdCav = t.Cav_Id))";
}

// Paid by an entry that no old closure counted, or that says whether its till is open.
std::string PaidLater(const std::string& day) {
  return "SELECT l.Tco_IdCav FROM main.Tco AS l JOIN main.Cav AS t ON t.Cav_Id = l.Tco_IdCav "
         "LEFT JOIN main.DiaCaj AS e ON e.DiaCaj_Id = l.Tco_IdDiaCaj WHERE " + OldTicket("t", day) +
         " AND (e.DiaCaj_Id IS NULL OR e.DiaCaj_Tipo NOT IN (1, 2) OR NOT (" + CountedBefore(day) +
         ") OR e.DiaCaj_Id IN (SELECT Id FROM temp.Ultimos))";
}

// Paid together with one that is not old.
std::string PaidWithLater(const std::string& day) {
  return "SELECT l.Tco_IdCav FROM main.DiaCaj AS e JOIN main.Tco AS l ON l.Tco_IdDiaCaj = e.DiaCaj_Id "
         "JOIN main.Tco AS o ON o.Tco_IdDiaCaj = e.DiaCaj_Id LEFT JOIN main.Cav AS t ON t.Cav_Id = o.Tco_IdCav AND " +
         OldTicket("t", day) + " WHERE e.DiaCaj_Tipo = 2 AND e.DiaCaj_Fecha < '" + day + "' AND t.Cav_Id IS NULL";
}

// The newest entry of each till.
constexpr const char* kNewest =
    "CREATE TEMP TABLE Ultimos (Id INTEGER PRIMARY KEY); INSERT OR IGNORE INTO temp.Ultimos SELECT (SELECT DiaCaj_Id "
    "FROM main.DiaCaj WHERE DiaCaj_Caja = c.Caja ORDER BY DiaCaj_Fecha DESC LIMIT 1) FROM (SELECT DISTINCT DiaCaj_Caja "
    "AS Caja FROM main.DiaCaj) AS c WHERE c.Caja IS NOT NULL";

}  // namespace

std::string FirstDayOf(int year) { return std::to_string(year) + "-01-01"; }

std::string CountedBefore(const std::string& day) {
  return "e.DiaCaj_Fecha < '" + day +
         "' AND EXISTS (SELECT 1 FROM main.DiaCaj AS c WHERE c.DiaCaj_Id = e.DiaCaj_IdCierre AND c.DiaCaj_Tipo = 9 "
         "AND c.DiaCaj_Fecha < '" + day + "')";
}

std::string Goes(const std::string& day) {
  return "Cav_Ticket = 1 AND +Cav_Fecha < '" + day + "' AND Cav_Id NOT IN (SELECT Id FROM temp.Quedan)";
}

void MarkStaying(sqlite3* store, const std::string& day) {
  sqlite::Run(store, kNewest);
  sqlite::Run(store, "CREATE TEMP TABLE Quedan (Id INTEGER PRIMARY KEY)");
  sqlite::Run(store, "WITH RECURSIVE queda(Id) AS (" + Unfinished(day) + " UNION " + PaidLater(day) + " UNION " +
                         PaidWithLater(day) +
                         " UNION SELECT o.Tco_IdCav FROM queda JOIN main.Tco AS l ON l.Tco_IdCav = queda.Id JOIN "
                         "main.Tco AS o ON o.Tco_IdDiaCaj = l.Tco_IdDiaCaj JOIN main.Cav AS t ON t.Cav_Id = "
                         "o.Tco_IdCav WHERE " + OldTicket("t", day) +
                         ") INSERT INTO temp.Quedan SELECT Id FROM queda WHERE Id IS NOT NULL");
}

}  // namespace tpv::archive
