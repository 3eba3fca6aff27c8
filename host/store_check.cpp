#include "host/store_check.h"

#include <algorithm>

#include "data/statements.h"
#include "host/fiscal_check.h"
#include "host/journal_check.h"

namespace tpv {

namespace {

constexpr std::size_t kRowsNamed = 5;

struct Rule {
  const char* text;   // what its rows are
  std::string rows;   // selects the ids of the rows that break it
  bool broken = true;
};

// Lines are rounded one by one where they are shown and all at once in lists: a
// ticket's amount may differ by half a cent a line.
const std::string kTolerance = " > 0.006 * (1 + (SELECT COUNT(*) FROM Lav WHERE Lav_IdCav = Cav_Id))";
const std::string kCost =
    "ISNULL((SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = Cav_Id),0)";
const std::string kPaid = std::string(kAmountCollected);
const std::string kTickets = "SELECT Cav_Id FROM Cav WHERE Cav_Ticket = 1 AND ";

std::string Links(const char* what) {
  return std::string("ISNULL((SELECT ") + what +
         " FROM Tco WHERE Tco_IdDiaCaj = DiaCaj_Id),0)";
}

// Closures one of whose amounts is not `sum` over the entries that it stamped, here and, as
// `archived`, in an archive.
std::string Closures(const char* amount, const char* sum, const char* types, const char* archived) {
  return std::string("SELECT closure.DiaCaj_Id FROM DiaCaj AS closure WHERE closure.DiaCaj_Tipo = 9 "
                     "AND ABS(closure.") +
         amount + " - ISNULL((SELECT SUM(" + sum +
         ") FROM DiaCaj AS entry WHERE entry.DiaCaj_IdCierre = closure.DiaCaj_Id AND "
         "entry.DiaCaj_Tipo IN (" + types + ")),0) - ISNULL((SELECT " + archived +
         " FROM ArchivoCierres WHERE Arc_IdCierre = closure.DiaCaj_Id),0)) > 0.005";
}

// What a store that was not made to its end lacks.
std::vector<Rule> GroundRules() {
  return {
      {"Los parámetros de la tienda no son una fila",
       "SELECT COUNT(*) FROM Parametros HAVING COUNT(*) <> 1"},
      {"Líneas cuyo tipo de impuesto no existe",
       "SELECT Lav_Id FROM Lav LEFT JOIN zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva WHERE Tiva_Id IS NULL"},
  };
}

std::vector<Rule> StockRules() {
  return {
      {"Movimientos de almacén que no son los de su línea",
       "SELECT movi_idlav FROM Movi INNER JOIN Lav ON Lav_Id = movi_idlav "
       "WHERE movi_uni <> Lav_Uni OR movi_idart <> Lav_Idart"},
      {"Movimientos de almacén de líneas eliminadas",
       "SELECT movi_idlav FROM Movi LEFT JOIN Lav ON Lav_Id = movi_idlav WHERE Lav_Id IS NULL",
       false},
  };
}

std::vector<Rule> TicketRules() {
  return {
      {"Líneas sin cabecera",
       "SELECT Lav_Id FROM Lav LEFT JOIN Cav ON Cav_Id = Lav_IdCav WHERE Cav_Id IS NULL"},
      {"Números de ticket repetidos",
       "SELECT MAX(Cav_Id) FROM Cav WHERE Cav_Ticket = 1 GROUP BY ISNULL(Cav_Serie,''), Cav_Numero "
       "HAVING COUNT(*) > 1"},
      {"Tickets sin caja", kTickets + "Cav_Caja IS NULL"},
      // A ticket given away, all of it a discount, has none.
      {"Tickets cobrados sin ningún cobro",
       kTickets + "Cav_Cobrado = 1 AND NOT EXISTS (SELECT * FROM Tco WHERE Tco_IdCav = Cav_Id) AND " +
           kCost + kTolerance,
       false},
      {"Tickets cobrados cuyos cobros no suman su importe",
       kTickets + "Cav_Cobrado = 1 AND EXISTS (SELECT * FROM Tco WHERE Tco_IdCav = Cav_Id) AND ABS(" +
           kPaid + " - " + kCost + ")" + kTolerance},
      {"Tickets cobrados de más", kTickets + kPaid + " > 0 AND " + kPaid + " - " + kCost + kTolerance},
      {"Tickets pagados dos veces en caja",
       "SELECT Tco_IdCav FROM Tco INNER JOIN DiaCaj ON DiaCaj_Id = Tco_IdDiaCaj WHERE DiaCaj_Tipo = 1 "
       "GROUP BY Tco_IdCav HAVING COUNT(*) > 1"},
  };
}

// A living till has them too; one that is still there when no till sells was left by
// a program that died.
std::vector<Rule> SaleInProgressRules() {
  return {
      {"Ventas en curso (si su caja no está vendiendo, quedaron a medias: recupérelas en su pantalla "
       "de venta, o déjelas como tickets pendientes con «tpv store release»)",
       "SELECT Vec_IdCav FROM VentasEnCurso INNER JOIN Cav ON Cav_Id = Vec_IdCav WHERE Vec_Caja <> 0", false},
      {"Ventas en curso de otra caja que su ticket, o aparcadas que aún son de una",
       "SELECT Vec_IdCav FROM VentasEnCurso INNER JOIN Cav ON Cav_Id = Vec_IdCav WHERE Vec_Caja <> Cav_Caja"},
      {"Ventas en curso que no existen, o ya están cobradas o facturadas",
       "SELECT Vec_IdCav FROM VentasEnCurso LEFT JOIN Cav ON Cav_Id = Vec_IdCav "
       "WHERE Cav_Id IS NULL OR Cav_Cobrado = 1 OR Cav_Situa = 2"},
  };
}

std::vector<Rule> JournalRules() {
  return {
      {"Cobros de tickets sin su apunte de caja",
       "SELECT Tco_IdDiaCaj FROM Tco LEFT JOIN DiaCaj ON DiaCaj_Id = Tco_IdDiaCaj "
       "WHERE DiaCaj_Id IS NULL"},
      {"Cobros de tickets sin su ticket",
       "SELECT Tco_IdCav FROM Tco LEFT JOIN Cav ON Cav_Id = Tco_IdCav WHERE Cav_Id IS NULL"},
      {"Apuntes con cobros que no son de cobro",
       "SELECT DiaCaj_Id FROM DiaCaj WHERE DiaCaj_Tipo NOT IN (1, 2) AND " + Links("COUNT(*)") +
           " > 0"},
      {"Cobros en caja que no son de un solo ticket",
       "SELECT DiaCaj_Id FROM DiaCaj WHERE DiaCaj_Tipo = 1 AND " + Links("COUNT(*)") + " <> 1"},
      {"Apuntes cuyos cobros no suman lo cobrado y descontado",
       "SELECT DiaCaj_Id FROM DiaCaj WHERE DiaCaj_Tipo IN (1, 2) AND ABS(" +
           Links("SUM(Tco_Importe)") +
           " - ISNULL(DiaCaj_Cobrado,0) - ISNULL(DiaCaj_Descuento,0)) > 0.005"},
      {"Apuntes cuyo cobro no es lo entregado menos lo devuelto",
       "SELECT DiaCaj_Id FROM DiaCaj WHERE DiaCaj_Tipo IN (1, 2) AND ABS(ISNULL(DiaCaj_Entrega,0) + "
       "ISNULL(DiaCaj_Tarjeta,0) - ISNULL(DiaCaj_Devolucion,0) - ISNULL(DiaCaj_Cobrado,0)) > 0.005"},
  };
}

std::vector<Rule> ClosureRules() {
  return {
      {"Apuntes de un cierre que no existe o es de otra caja",
       "SELECT entry.DiaCaj_Id FROM DiaCaj AS entry LEFT JOIN DiaCaj AS closure ON "
       "closure.DiaCaj_Id = entry.DiaCaj_IdCierre AND closure.DiaCaj_Tipo = 9 AND "
       "closure.DiaCaj_Caja = entry.DiaCaj_Caja "
       "WHERE entry.DiaCaj_IdCierre <> 0 AND closure.DiaCaj_Id IS NULL"},
      // Dated before the opening, by hand or by a clock that was set back.
      {"Apuntes que ningún cierre recogió",
       "SELECT entry.DiaCaj_Id FROM DiaCaj AS entry WHERE entry.DiaCaj_Tipo IN (1, 2, 3) AND "
       "ISNULL(entry.DiaCaj_IdCierre,0) = 0 AND EXISTS (SELECT * FROM DiaCaj AS closure WHERE "
       "closure.DiaCaj_Caja = entry.DiaCaj_Caja AND closure.DiaCaj_Tipo = 9 AND "
       "closure.DiaCaj_Id > entry.DiaCaj_Id)",
       false},
      // Deleting a ticket of a closed day takes its entry and leaves the closure.
      {"Cierres cuyo efectivo no es el de sus apuntes",
       Closures("DiaCaj_CobMet",
                "ISNULL(entry.DiaCaj_Entrega,0) - ISNULL(entry.DiaCaj_Devolucion,0)", "1, 2",
                "Arc_Metalico"),
       false},
      {"Cierres cuyas tarjetas no son las de sus apuntes",
       Closures("DiaCaj_CobTar", "entry.DiaCaj_Tarjeta", "1, 2", "Arc_Tarjeta"), false},
      {"Cierres cuyos pagos no son los de sus apuntes",
       Closures("DiaCaj_Pagos", "entry.DiaCaj_Entrega", "3", "Arc_Pagos")},
  };
}

std::vector<Rule> InvoiceRules() {
  return {
      // A till would sell to whichever comes first.
      {"Códigos de cliente repetidos (se nombra el código: cambie uno de los dos)",
       "SELECT CLI_COD FROM Cli GROUP BY CLI_COD HAVING COUNT(*) > 1"},
      {"Números de factura repetidos",
       "SELECT MAX(Fav_Id) FROM Fav GROUP BY ISNULL(Fav_Serie,''), Fav_Numero HAVING COUNT(*) > 1"},
      {"Tickets de una factura que no existe",
       kTickets + "Cav_Situa = 2 AND NOT EXISTS (SELECT * FROM Fav WHERE Fav_Id = Cav_IdFactura)"},
      {"Facturas cuyas líneas no suman su total",
       "SELECT Fav_Id FROM Fav WHERE ABS(ISNULL(Fav_Total,0) - "
       "ISNULL((SELECT SUM(Fal_Total) FROM Fal WHERE Fal_IdFav = Fav_Id),0)) > 0.005"},
      {"Facturas cuyos vencimientos no suman su total",
       "SELECT Fav_Id FROM Fav WHERE EXISTS (SELECT * FROM Vto WHERE Vto_IdFav = Fav_Id) AND "
       "ABS(Fav_Total - (SELECT SUM(Vto_Importe) FROM Vto WHERE Vto_IdFav = Fav_Id)) > 0.005"},
  };
}

// `tpv store mend` takes them back.
std::vector<Rule> DateRules() {
  const std::string after_today = " WHERE DATEDIFF(day, Getdate(), ";
  return {
      {"Apuntes fechados después de hoy", "SELECT DiaCaj_Id FROM DiaCaj" + after_today + "DiaCaj_Fecha) > 0",
       false},
      {"Ventas fechadas después de hoy", "SELECT Cav_Id FROM Cav" + after_today + "Cav_Fecha) > 0", false},
  };
}

StoreFinding Ask(Connection& connection, const Rule& rule) {
  StoreFinding finding{rule.text, {}, 0, rule.broken};
  const auto rows = connection.Execute(rule.rows);
  for (; !rows->Eof(); rows->MoveNext()) finding.Add(rows->Field(0).ToInt64());
  return finding;
}

}  // namespace

void StoreFinding::Add(std::int64_t row) {
  if (rows.size() < kRowsNamed) rows.push_back(std::to_string(row));
  ++count;
}

std::vector<StoreFinding> CheckStore(Connection& connection) {
  std::vector<StoreFinding> findings;
  for (const auto& rules : {GroundRules(), TicketRules(), StockRules(), SaleInProgressRules(), JournalRules(),
                            ClosureRules(), InvoiceRules(), DateRules()}) {
    for (const Rule& rule : rules) findings.push_back(Ask(connection, rule));
  }
  for (StoreFinding& finding : CheckJournal(connection)) findings.push_back(std::move(finding));
  for (StoreFinding& finding : CheckFiscal(connection).findings) findings.push_back(std::move(finding));
  std::erase_if(findings, [](const StoreFinding& finding) { return finding.count == 0; });
  return findings;
}

std::string FindingsText(const std::vector<StoreFinding>& findings) {
  std::string text;
  for (const StoreFinding& finding : findings) {
    text += (finding.broken ? "ROTO  " : "Aviso ") + finding.text + ": " +
            std::to_string(finding.count) + " (";
    for (std::size_t i = 0; i < finding.rows.size(); ++i) {
      text += (i == 0 ? "" : ", ") + finding.rows[i];
    }
    text += finding.rows.size() < static_cast<std::size_t>(finding.count) ? "…)\n" : ")\n";
  }
  return text;
}

bool AnyBroken(const std::vector<StoreFinding>& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](const StoreFinding& finding) { return finding.broken; });
}

}  // namespace tpv
