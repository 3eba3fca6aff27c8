#include "adapters/sqlite/kept_months.h"

#include <random>

namespace tpv::sqlite {

const char* const kKeptMonthsTable = "CREATE TABLE IF NOT EXISTS main.TpvMeses (Mes TEXT PRIMARY KEY, Marca TEXT, "
                                     "Texto TEXT) WITHOUT ROWID";

namespace {

// What a period's sums are made from. `date` is the row's own, or a look at its ticket's.
struct Watched {
  const char* table;
  const char* columns;
  const char* date;  // '%' for OLD or NEW
};

constexpr const char* kOfTicket = "(SELECT Cav_Fecha FROM Cav WHERE Cav_Id = %.Lav_IdCav)";
constexpr Watched kWatched[] = {
    {"Cav", "Cav_Id, Cav_Fecha, Cav_Caja, Cav_Agente, Cav_Ticket", "%.Cav_Fecha"},
    {"Lav", "Lav_IdCav, Lav_Idart, Lav_Uni, Lav_Importe, Lav_Tiva", kOfTicket},
    {"DiaCaj", "DiaCaj_Fecha, DiaCaj_Tipo, DiaCaj_Entrega, DiaCaj_Devolucion, DiaCaj_Tarjeta, DiaCaj_Descuento",
     "%.DiaCaj_Fecha"}};

std::string Forgets(std::string date, const char* row) {
  for (std::size_t at; (at = date.find('%')) != std::string::npos;) date.replace(at, 1, row);
  return "DELETE FROM TpvMeses WHERE Mes = substr(" + date + ", 1, 7); ";
}

std::string Trigger(const std::string& name, const std::string& when, const std::string& table,
                    const std::string& work) {
  return "CREATE TRIGGER " + name + " AFTER " + when + " ON \"" + table + "\" BEGIN " + work + "END";
}

}  // namespace

std::map<std::string, std::string> KeptMonthsTriggers() {
  std::map<std::string, std::string> triggers;
  const auto add = [&](const std::string& table, const char* change, const std::string& of, const std::string& work) {
    const std::string name = "tpv_mes_" + table + "_" + change;
    triggers[name] = Trigger(name, change + of, table, work);
  };
  for (const Watched& watched : kWatched) {
    const std::string before = Forgets(watched.date, "OLD");
    const std::string after = Forgets(watched.date, "NEW");
    add(watched.table, "INSERT", "", after);
    add(watched.table, "DELETE", "", before);
    add(watched.table, "UPDATE", " OF " + std::string(watched.columns), before + after);
  }
  for (const char* change : {"INSERT", "UPDATE", "DELETE"}) add("tivas", change, "", "DELETE FROM TpvMeses; ");
  return triggers;
}

std::string KeptMonths::Recall(std::string_view month) {
  return Text(handle_, "SELECT coalesce(max(Texto), '') FROM main.TpvMeses WHERE Mes = " + Literal(std::string(month)));
}

std::string KeptMonths::Announce(std::string_view month) {
  std::random_device chance;
  const std::string mark = std::to_string(chance()) + "-" + std::to_string(chance());
  Run(handle_, "INSERT OR REPLACE INTO main.TpvMeses VALUES (" + Literal(std::string(month)) + ", " + Literal(mark) +
                   ", NULL)");
  return mark;
}

void KeptMonths::Keep(std::string_view month, std::string_view mark, std::string_view text) {
  Run(handle_, "UPDATE main.TpvMeses SET Texto = " + Literal(std::string(text)) + ", Marca = NULL WHERE Mes = " +
                   Literal(std::string(month)) + " AND Marca = " + Literal(std::string(mark)));
}

}  // namespace tpv::sqlite
