#include "data/archived.h"

#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv {

namespace {

struct Archive {
  std::string year;
  std::string file;
  std::string Named() const { return "el archivo hasta " + year + ", «" + file + "»"; }
};

// The last one that the condition finds. It only informs, and a host's own database may know
// of no archives.
std::optional<Archive> Find(Connection& connection, const std::string& condition) {
  try {
    const auto row = connection.Execute("SELECT TOP 1 Arv_Hasta, Arv_Fichero FROM Archivos WHERE Arv_Hasta > 0 AND " +
                                        condition + " ORDER BY Arv_Hasta DESC");
    if (row->Eof()) return std::nullopt;
    return Archive{row->Field(0).ToText(), row->Field(1).TextOr("")};
  } catch (const DatabaseError&) {
    return std::nullopt;
  }
}

}  // namespace

std::string ArchiveOfTicket(Connection& connection, const std::string& series, std::int32_t number) {
  const std::string sought = sql::Number(std::int64_t{number});
  const auto archive =
      Find(connection, "Arv_Id IN (SELECT Ars_IdArchivo FROM ArchivoSeries WHERE Ars_Serie = " + sql::Quoted(series) +
                           " AND Ars_Desde <= " + sought + " AND Ars_Hasta >= " + sought + ")");
  return archive ? "mírela en " + archive->Named() : std::string();
}

std::string ArchiveOfClosure(Connection& connection, std::int32_t closure) {
  const auto archive = Find(connection, "Arv_Id IN (SELECT Arc_IdArchivo FROM ArchivoCierres WHERE Arc_IdCierre = " +
                                            sql::Number(std::int64_t{closure}) + ")");
  return archive ? "está en " + archive->Named() : std::string();
}

std::string ArchivedSince(Connection& connection, const std::optional<DateTime>& from, const DateTime& now) {
  if (from && from->year >= now.year) return "";
  const auto archive = Find(connection, "Arv_Hasta >= " + sql::Number(std::int64_t{from ? from->year : 0}));
  return archive ? "Lo saldado hasta " + archive->year + " no sale aquí: está en el archivo «" + archive->file + "»"
                 : std::string();
}

}  // namespace tpv
