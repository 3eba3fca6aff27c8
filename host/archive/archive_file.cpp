#include "host/archive/archive_file.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/lone_store.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/store_upgrade.h"
#include "data/schema.h"
#include "host/archive/settled.h"
#include "host/store_check.h"
#include "platform/pulse.h"

namespace tpv::archive {

namespace {

namespace fs = std::filesystem;

std::string Name(const std::string& path) { return fs::path(path).filename().string(); }

// The rows of each table that go along: a condition, "1" for all and "" for none.
using Rows = std::map<std::string_view, std::string>;

Rows RowsOf(const std::string& day) {
  const std::string before = " < '" + day + "'";
  const std::string of_invoices = " IN (SELECT Fav_Id FROM archivo.Fav)";
  return {
      {"Lav", "EXISTS (SELECT 1 FROM archivo.Cav WHERE Cav_Id = Lav_IdCav)"},
      {"Tco", "EXISTS (SELECT 1 FROM archivo.Cav WHERE Cav_Id = Tco_IdCav)"},
      {"Movi", "EXISTS (SELECT 1 FROM archivo.Lav WHERE Lav_Id = movi_idlav)"},
      {"Arqueos", "EXISTS (SELECT 1 FROM archivo.DiaCaj WHERE DiaCaj_Id = Arq_IdCierre)"},
      {"Anulados", "Anu_Cuando" + before},
      {"Fav", "Fav_Fecha" + before + " OR Fav_Id IN (SELECT Cav_IdFactura FROM archivo.Cav WHERE Cav_Situa = 2) OR "
              "Fav_Id IN (SELECT Fis_IdFav FROM archivo.Fiscal)"},
      {"Fal", "Fal_IdFav" + of_invoices},
      {"Fai", "Fai_IdFav" + of_invoices},
      {"Vto", "Vto_IdFav" + of_invoices},
      {"FiscalRespuestas", "Fir_IdFis <= (SELECT MAX(Fis_Id) FROM archivo.Fiscal)"},
      {"VentasEnCurso", ""}, {"QCIERRES", ""}, {"QCIERRESEnvio", ""}, {"FiscalTurno", ""},
      {"Archivos", ""}, {"ArchivoCierres", ""}, {"ArchivoSeries", ""},
      {"Cav", Goes(day)},
      {"DiaCaj",
       "CASE WHEN DiaCaj_Tipo IN (1, 2) THEN EXISTS (SELECT 1 FROM main.Tco JOIN archivo.Cav ON Cav_Id = Tco_IdCav WHERE "
       "Tco_IdDiaCaj = e.DiaCaj_Id) WHEN DiaCaj_Tipo = 3 THEN e.DiaCaj_Id NOT IN (SELECT Id FROM temp.Ultimos) AND " +
           CountedBefore(day) + " ELSE e.DiaCaj_Fecha" + before + " END"},
      // The chain from its beginning to the last record of what is archived.
      {"Fiscal",
       "Fis_Id <= (SELECT MAX(Fis_Id) FROM main.Fiscal WHERE Fis_IdCav IN (SELECT Cav_Id FROM archivo.Cav) OR Fis_IdFav "
       "IN (SELECT Fav_Id FROM main.Fav WHERE Fav_Fecha" + before +
           " UNION SELECT Cav_IdFactura FROM archivo.Cav WHERE Cav_Situa = 2))"}};
}

// Tickets first, for all else follows from them.
std::vector<const schema::Table*> InOrder() {
  std::vector<const schema::Table*> tables;
  for (const char* first : {"Cav", "Lav", "Tco", "DiaCaj", "Fiscal", "Fav"}) tables.push_back(schema::FindTable(first));
  for (const schema::Table& table : schema::Tables()) {
    if (std::find(tables.begin(), tables.end(), &table) == tables.end()) tables.push_back(&table);
  }
  return tables;
}

void Fill(sqlite3* store, const std::string& day) {
  const Rows rows = RowsOf(day);
  const auto tables = InOrder();
  for (std::size_t i = 0; i < tables.size(); ++i) {
    Pulse(static_cast<double>(i) / static_cast<double>(tables.size()));
    const std::string table(tables[i]->name);
    const auto known = rows.find(table);
    const std::string condition = known == rows.end() ? "1" : known->second;
    if (condition.empty()) continue;
    const std::string columns = schema::ColumnNames(*tables[i]);
    sqlite::Run(store, "INSERT INTO archivo.\"" + table + "\" (" + columns + ") SELECT " + columns + " FROM main.\"" +
                           table + "\" AS e WHERE " + condition);
  }
}

// What closures counted that stays in the store, and where that is.
void SayWhereTheRestIs(sqlite3* store, const std::string& file, int year) {
  sqlite::Run(store,
              "INSERT INTO archivo.Archivos (Arv_Id, Arv_Hasta, Arv_Fichero) VALUES (1, " + std::to_string(1 - year) +
                  ", " + sqlite::Literal(file) + "); "
              "INSERT INTO archivo.ArchivoCierres SELECT DiaCaj_IdCierre, 1, COUNT(*), round(total(CASE WHEN DiaCaj_Tipo "
              "<> 3 THEN ifnull(DiaCaj_Entrega, 0) - ifnull(DiaCaj_Devolucion, 0) END), 2), round(total(CASE WHEN "
              "DiaCaj_Tipo <> 3 THEN DiaCaj_Tarjeta END), 2), round(total(CASE WHEN DiaCaj_Tipo = 3 THEN DiaCaj_Entrega "
              "END), 2) FROM main.DiaCaj AS e WHERE DiaCaj_Tipo IN (1, 2, 3) AND DiaCaj_IdCierre IN (SELECT DiaCaj_Id "
              "FROM archivo.DiaCaj WHERE DiaCaj_Tipo = 9) AND NOT EXISTS (SELECT 1 FROM archivo.DiaCaj AS a WHERE "
              "a.DiaCaj_Id = e.DiaCaj_Id) GROUP BY DiaCaj_IdCierre");
}

// The records in force whose ticket stayed, as the check of the chain counts them.
constexpr const char* kCountRecords =
    "UPDATE Archivos SET (Arv_Modo, Arv_UltRegistro, Arv_Registros, Arv_ImpRegistros) = (SELECT (SELECT Par_Fiscal FROM "
    "Parametros), (SELECT MAX(Fis_Id) FROM Fiscal), COUNT(*), round(total(r.Fis_Total), 2) FROM Fiscal AS r WHERE "
    "r.Fis_IdCav IS NOT NULL AND r.Fis_Tipo <> 'AN' AND r.Fis_Modo = (SELECT Par_Fiscal FROM Parametros) AND r.Fis_Id > "
    "(SELECT ifnull(Par_FisRegistro, 0) FROM Parametros) AND NOT EXISTS (SELECT 1 FROM Fiscal AS l WHERE l.Fis_IdCav = "
    "r.Fis_IdCav AND l.Fis_Id > r.Fis_Id) AND NOT EXISTS (SELECT 1 FROM Cav WHERE Cav_Id = r.Fis_IdCav))";

void Finish(const std::string& file, const Clock& clock) {
  const sqlite::Handle archive = sqlite::OpenFile(file);
  RegisterFunctions(archive.get(), clock);
  sqlite::RawTransaction transaction(archive.get());
  sqlite::AddWhatIsMissing(archive.get());
  sqlite::Run(archive.get(), kCountRecords);
  sqlite::Run(archive.get(), "PRAGMA main.application_id = " + std::to_string(sqlite::kArchiveId));
  transaction.Commit();
}

void RequireSound(const std::string& file, const Clock& clock) {
  SqliteConnection archive(file, clock, OpenMode::AsItIs);
  const auto damage = archive.Damage();
  if (!damage.empty()) throw DatabaseError("El archivo está dañado: " + damage.front());
  const auto findings = CheckStore(archive);
  if (AnyBroken(findings)) throw DatabaseError("El archivo no cuadra:\n" + FindingsText(findings));
}

}  // namespace

void MakeArchive(sqlite::LoneStore& store, const std::string& path, int year, const Clock& clock) {
  NewStore archive(path);
  const std::string partial = NewStore::PartialPath(path);
  sqlite::DropIndexes(sqlite::OpenFile(partial).get());
  {
    const sqlite::Attached attached(store.handle(), partial, "archivo");
    sqlite::Run(store.handle(), "PRAGMA archivo.journal_mode = OFF; PRAGMA archivo.synchronous = OFF");
    sqlite::RawTransaction transaction(store.handle());
    Fill(store.handle(), FirstDayOf(year));
    SayWhereTheRestIs(store.handle(), Name(store.path()), year);
    transaction.Commit();
  }
  Finish(partial, clock);
  RequireSound(partial, clock);
  archive.Keep();
}

bool IsArchiveOf(const std::string& path, const sqlite::LoneStore& store, int year) {
  if (!sqlite::IsThere(path)) return false;
  if (!sqlite::IsArchiveFile(path)) throw StoreExists(path);
  const sqlite::Handle archive = sqlite::OpenFile(path);
  if (sqlite::Number(archive.get(), "SELECT COUNT(*) FROM Archivos WHERE Arv_Hasta = " + std::to_string(1 - year) +
                                        " AND Arv_Fichero = " + sqlite::Literal(Name(store.path())) +
                                        " COLLATE BINARY") == 1) {
    return true;
  }
  throw StoreExists(path);
}

}  // namespace tpv::archive
