#include "host/archive/removal.h"

#include "adapters/sqlite/lone_store.h"
#include "data/schema.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::archive {

namespace {

// What goes in a piece, and the closures that counted it.
constexpr const char* kPieceTables =
    "CREATE TEMP TABLE Parte (Id INTEGER PRIMARY KEY); CREATE TEMP TABLE Lineas (Id INTEGER PRIMARY KEY); "
    "CREATE TEMP TABLE Apuntes (Id INTEGER PRIMARY KEY); CREATE TEMP TABLE Cierres (Id INTEGER PRIMARY KEY)";

sqlite3* WithPieceTables(sqlite::LoneStore& store) {
  sqlite::Run(store.handle(), kPieceTables);
  return store.handle();
}

std::int64_t Count(sqlite3* store, const std::string& sql) {
  const std::string text = sqlite::Text(store, sql);
  return text.empty() ? 0 : std::stoll(text);
}

// Rows of the store that the archive does not hold exactly so.
std::string Unlike(const std::string& table, const std::string& condition) {
  const std::string columns = schema::ColumnNames(*schema::FindTable(table));
  std::string exact;  // not as texts are compared, but as they are stored
  for (const schema::Column& column : schema::FindTable(table)->columns) {
    exact.append(exact.empty() ? "" : ", ").append("quote(").append(column.name).append(")");
  }
  const auto from = [&](const char* place) {
    return "SELECT " + exact + " FROM " + place + ".\"" + table + "\" WHERE " + condition;
  };
  return "SELECT COUNT(*) FROM (" + from("main") + " EXCEPT " + from("archivo") + ")";
}

constexpr const char* kAmountOfPiece =
    "(SELECT round(total(a), 2) FROM (SELECT round(total(Lav_Importe + Lav_Importe / 100 * Tiva_iva), 2) AS a FROM main.Lav "
    "JOIN main.tivas ON Tiva_Id = Lav_Tiva WHERE Lav_IdCav IN (SELECT Id FROM temp.Parte) GROUP BY Lav_IdCav))";

// Of the piece, as the check of the chain counts them.
constexpr const char* kRecordsOfPiece =
    " FROM main.Fiscal AS r WHERE r.Fis_IdCav IN (SELECT Id FROM temp.Parte) AND r.Fis_Tipo <> 'AN' AND r.Fis_Modo = "
    "(SELECT Par_Fiscal FROM main.Parametros) AND r.Fis_Id > (SELECT ifnull(Par_FisRegistro, 0) FROM main.Parametros) AND "
    "NOT EXISTS (SELECT 1 FROM main.Fiscal AS l WHERE l.Fis_IdCav = r.Fis_IdCav AND l.Fis_Id > r.Fis_Id)";

struct Going {
  const char* table;
  std::string condition;
};

const std::string kOfEntries = "DiaCaj_Id IN (SELECT Id FROM temp.Apuntes)";

// In the order in which they are taken out.
const Going kGoing[] = {{"Movi", "movi_idlav IN (SELECT Id FROM temp.Lineas)"},
                        {"Lav", "Lav_Id IN (SELECT Id FROM temp.Lineas)"},
                        {"Tco", "Tco_IdCav IN (SELECT Id FROM temp.Parte)"},
                        {"DiaCaj", kOfEntries},
                        {"Cav", "Cav_Id IN (SELECT Id FROM temp.Parte)"}};

}  // namespace

Removal::Removal(sqlite::LoneStore& store, const std::string& file, int year)
    : store_(WithPieceTables(store)), file_(file), year_(year), books_(store.handle()) {}

// The archive's name, and the numbers that nobody may give again.
void Removal::Begin() {
  sqlite::RawTransaction transaction(store_);
  const std::string known = "SELECT Arv_Id FROM main.Archivos WHERE Arv_Hasta = " + std::to_string(year_ - 1) +
                            " AND Arv_Fichero = " + sqlite::Literal(file_);
  if (Count(store_, known) == 0) {
    sqlite::Run(store_, "INSERT INTO main.Archivos (Arv_Hasta, Arv_Fichero, Arv_Cuando, Arv_Tickets, Arv_Importe, "
                        "Arv_Modo, Arv_Registros, Arv_ImpRegistros, Arv_UltRegistro) SELECT " +
                            std::to_string(year_ - 1) + ", " + sqlite::Literal(file_) +
                            ", tpv_getdate(), 0, 0, ifnull(Par_Fiscal, 0), 0, 0, 0 "
                            "FROM main.Parametros");
    sqlite::Run(store_, "INSERT INTO main.ArchivoSeries SELECT MAX(Arv_Id), s, d, h FROM main.Archivos, (SELECT "
                        "ifnull(Cav_Serie, '') AS s, MIN(Cav_Numero) AS d, MAX(Cav_Numero) AS h FROM archivo.Cav GROUP BY "
                        "ifnull(Cav_Serie, '')) GROUP BY s, d, h");
  }
  archive_id_ = std::to_string(Count(store_, known));
  sqlite::Run(store_,
              "UPDATE main.Contadores SET cont_numero = h FROM (SELECT Cav_Serie AS s, MAX(Cav_Numero) AS h FROM "
              "archivo.Cav GROUP BY Cav_Serie) WHERE cont_tipo = 'ALBVENTA' AND cont_serie = s AND cont_numero < h AND h > "
              "0; INSERT INTO main.Contadores SELECT 'ALBVENTA', s, h FROM (SELECT Cav_Serie AS s, MAX(Cav_Numero) AS h "
              "FROM main.Cav WHERE Cav_Serie IS NOT NULL GROUP BY Cav_Serie) WHERE NOT EXISTS (SELECT 1 FROM "
              "main.Contadores WHERE cont_tipo = 'ALBVENTA' AND cont_serie = s)");
  transaction.Commit();
}

// A ticket goes with the entries that paid it, and they with all that they paid.
void Removal::GatherTickets(std::int64_t from, std::int64_t to) {
  sqlite::Run(store_,
              "WITH RECURSIVE parte(Tipo, Id) AS (SELECT 0, a.Cav_Id FROM archivo.Cav AS a JOIN main.Cav AS m ON m.Cav_Id = "
              "a.Cav_Id WHERE a.Cav_Id > " + std::to_string(from) + " AND a.Cav_Id <= " + std::to_string(to) +
              " UNION SELECT 1, Tco_IdDiaCaj FROM parte JOIN main.Tco ON Tco_IdCav = Id WHERE Tipo = 0 UNION SELECT 0, "
              "Tco_IdCav FROM parte JOIN main.Tco ON Tco_IdDiaCaj = Id WHERE Tipo = 1) "
              "INSERT INTO temp.Parte SELECT Id FROM parte WHERE Tipo = 0");
  sqlite::Run(store_,
              "INSERT INTO temp.Lineas SELECT Lav_Id FROM temp.Parte JOIN main.Lav ON Lav_IdCav = Id; "
              "INSERT OR IGNORE INTO temp.Apuntes SELECT Tco_IdDiaCaj FROM temp.Parte JOIN main.Tco ON Tco_IdCav = Id");
}

void Removal::GatherPaymentsOut() {
  sqlite::Run(store_, "INSERT INTO temp.Apuntes SELECT a.DiaCaj_Id FROM archivo.DiaCaj AS a JOIN main.DiaCaj AS m ON "
                      "m.DiaCaj_Id = a.DiaCaj_Id WHERE a.DiaCaj_Tipo = 3");
}

void Removal::CarryOver() {
  sqlite::Run(store_, "UPDATE main.Archivos SET Arv_Tickets = Arv_Tickets + (SELECT COUNT(*) FROM temp.Parte), Arv_Importe "
                      "= round(Arv_Importe + " + std::string(kAmountOfPiece) +
                          ", 2), Arv_Registros = Arv_Registros + (SELECT COUNT(*)" + kRecordsOfPiece +
                          "), Arv_ImpRegistros = round(Arv_ImpRegistros + (SELECT total(r.Fis_Total)" + kRecordsOfPiece +
                          "), 2), Arv_UltRegistro = max(Arv_UltRegistro, (SELECT ifnull(MAX(r.Fis_Id), 0)" +
                          kRecordsOfPiece + ")) WHERE Arv_Id = " + archive_id_);
  sqlite::Run(store_,
              "INSERT INTO main.ArchivoCierres SELECT DiaCaj_IdCierre, " + archive_id_ +
                  ", COUNT(*), round(total(CASE WHEN DiaCaj_Tipo <> 3 THEN ifnull(DiaCaj_Entrega, 0) - "
                  "ifnull(DiaCaj_Devolucion, 0) END), 2), round(total(CASE WHEN DiaCaj_Tipo <> 3 THEN DiaCaj_Tarjeta END), "
                  "2), round(total(CASE WHEN DiaCaj_Tipo = 3 THEN DiaCaj_Entrega END), 2) FROM main.DiaCaj WHERE " +
                  kOfEntries +
                  " GROUP BY DiaCaj_IdCierre ON CONFLICT (Arc_IdCierre) DO UPDATE SET Arc_IdArchivo = "
                  "excluded.Arc_IdArchivo, Arc_Apuntes = Arc_Apuntes + excluded.Arc_Apuntes, Arc_Metalico = "
                  "round(Arc_Metalico + excluded.Arc_Metalico, 2), Arc_Tarjeta = round(Arc_Tarjeta + excluded.Arc_Tarjeta, "
                  "2), Arc_Pagos = round(Arc_Pagos + excluded.Arc_Pagos, 2)");
}

// What was gathered; how many tickets.
std::int64_t Removal::TakeOut() {
  sqlite::Run(store_, "INSERT OR IGNORE INTO temp.Cierres SELECT DiaCaj_IdCierre FROM temp.Apuntes JOIN main.DiaCaj ON "
                      "DiaCaj_Id = Id");
  for (const Going& going : kGoing) {
    if (Count(store_, Unlike(going.table, going.condition)) == 0) continue;
    throw DatabaseError("El archivo «" + file_ + "» no tiene tal cual lo que se iba a quitar de la tienda (" +
                        going.table + "), y no se ha quitado: dele otro nombre al archivo y repita la orden");
  }
  books_.Note();
  CarryOver();
  for (const Going& going : kGoing) {
    sqlite::Run(store_, "DELETE FROM main.\"" + std::string(going.table) + "\" WHERE " + going.condition);
  }
  books_.RequireSame();
  return Count(store_, "SELECT COUNT(*) FROM temp.Parte");
}

std::int64_t Removal::Run(std::int64_t tickets_a_piece) {
  Begin();
  const auto last = static_cast<double>(Count(store_, "SELECT MAX(Cav_Id) FROM archivo.Cav"));
  std::int64_t removed = 0;
  const auto piece = [&](const auto& gather) {
    sqlite::RawTransaction transaction(store_);
    for (const char* table : {"Parte", "Lineas", "Apuntes", "Cierres"}) {
      sqlite::Run(store_, "DELETE FROM temp." + std::string(table));
    }
    gather();
    removed += TakeOut();
    transaction.Commit();
  };
  for (std::int64_t from = 0;;) {
    const std::int64_t to =
        Count(store_, "SELECT MAX(Cav_Id) FROM (SELECT Cav_Id FROM archivo.Cav WHERE Cav_Id > " + std::to_string(from) +
                          " ORDER BY Cav_Id LIMIT " + std::to_string(tickets_a_piece) + ")");
    if (to == 0) break;
    piece([&] { GatherTickets(from, to); });
    from = to;
    Pulse(static_cast<double>(to) / last);
  }
  piece([&] { GatherPaymentsOut(); });
  return removed;
}

}  // namespace tpv::archive
