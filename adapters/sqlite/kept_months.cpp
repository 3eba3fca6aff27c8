#include "adapters/sqlite/kept_months.h"

#include <random>
#include <string>

namespace tpv::sqlite {

// With row numbers: the months' long texts would lie in the way of every look for one
// otherwise, and each line sold looks whether its month is kept.
const char* const kKeptMonthsTable = "CREATE TABLE TpvMeses (Mes TEXT PRIMARY KEY, Marca TEXT, Texto TEXT)";

namespace {

// What a period's sums are made from.
struct Watched {
  const char* table;
  const char* id;
  const char* columns;
  const char* date;  // of row '%': its own, or a look at its ticket's
};

constexpr Watched kWatched[] = {
    {"Cav", "Cav_Id", "Cav_Id, Cav_Fecha, Cav_Caja, Cav_Agente, Cav_Ticket", "%.Cav_Fecha"},
    {"Lav", "Lav_Id", "Lav_IdCav, Lav_Idart, Lav_Uni, Lav_Importe, Lav_Tiva",
     "(SELECT Cav_Fecha FROM Cav WHERE Cav_Id = %.Lav_IdCav)"},
    {"DiaCaj", "DiaCaj_Id",
     "DiaCaj_Fecha, DiaCaj_Tipo, DiaCaj_Entrega, DiaCaj_Devolucion, DiaCaj_Tarjeta, DiaCaj_Descuento",
     "%.DiaCaj_Fecha"}};

std::string MonthOf(const Watched& watched, const std::string& row) {
  std::string date = watched.date;
  return "substr(" + date.replace(date.find('%'), 1, row) + ", 1, 7)";
}

std::string Forgets(const std::string& month) { return "DELETE FROM TpvMeses WHERE Mes = " + month + "; "; }

// The row whose number another is about to take: of its end the engine tells no trigger.
std::string ForgetsReplaced(const Watched& watched) {
  const std::string table = watched.table;
  const std::string id = watched.id;
  return Forgets("(SELECT " + MonthOf(watched, table) + " FROM " + table + " WHERE " + id + " = NEW." + id + ")");
}

}  // namespace

std::map<std::string, std::string> KeptMonthsTriggers() {
  std::map<std::string, std::string> triggers;
  const auto add = [&](const std::string& table, const std::string& name, const std::string& when,
                       const std::string& work) {
    const std::string whole = "tpv_mes_" + table + "_" + name;
    triggers[whole] = "CREATE TRIGGER " + whole + " " + when + " BEGIN " + work + "END";
  };
  for (const Watched& watched : kWatched) {
    const std::string table = watched.table;
    const std::string before = Forgets(MonthOf(watched, "OLD"));
    const std::string after = Forgets(MonthOf(watched, "NEW"));
    const std::string on = " ON \"" + table + "\"";
    add(table, "INSERT", "AFTER INSERT" + on, after);
    add(table, "DELETE", "AFTER DELETE" + on, before);
    add(table, "UPDATE", "AFTER UPDATE OF " + std::string(watched.columns) + on, before + after);
    // A row that the store gives its number takes nobody's.
    add(table, "REPLACE", "BEFORE INSERT" + on + " WHEN NEW." + watched.id + " > 0", ForgetsReplaced(watched));
    add(table, "RENUMBER", "BEFORE UPDATE OF " + std::string(watched.id) + on, ForgetsReplaced(watched));
  }
  for (const char* change : {"INSERT", "UPDATE", "DELETE"}) {
    add("tivas", change, "AFTER " + std::string(change) + " ON \"tivas\"", "DELETE FROM TpvMeses; ");
  }
  return triggers;
}

std::string KeptMonths::Recall(std::string_view month) {
  return Text(handle_, "SELECT coalesce(max(Texto), '') FROM main.TpvMeses WHERE Mes = " + Literal(std::string(month)));
}

std::string KeptMonths::Announce(std::string_view month) {
  std::random_device chance;
  std::string mark = std::to_string(chance()) + "-" + std::to_string(chance());
  Run(handle_, "INSERT OR REPLACE INTO main.TpvMeses VALUES (" + Literal(std::string(month)) + ", " + Literal(mark) +
                   ", NULL)");
  return mark;
}

void KeptMonths::Keep(std::string_view month, std::string_view mark, std::string_view text) {
  Run(handle_, "UPDATE main.TpvMeses SET Texto = " + Literal(std::string(text)) + ", Marca = NULL WHERE Mes = " +
                   Literal(std::string(month)) + " AND Marca = " + Literal(std::string(mark)));
}

}  // namespace tpv::sqlite
