#include "data/journal.h"

#include "context/context.h"
#include "data/till_clock.h"
#include "data/till_state.h"

namespace tpv {

RowBuilder& RowInTransaction(Context& context, const char* table) {
  RowBuilder& row = context.MyBd->NuevaSentencia();
  row.Tabla(table);
  row.BeginTrans(false);
  return row;
}

namespace {

void RequireDayOf(Context& context, const TillClock& clock, std::int32_t till, const DateTime& day) {
  clock.RequireNotAfterToday(day, "La fecha es posterior a hoy");
  const auto opening = NewestEvent(context.Database(), till, JournalEvent::Opening);
  if (!opening || StartOfDay(day) >= StartOfDay(*opening)) return;
  throw TillRefusal("La fecha es anterior a la apertura de la caja (" + ToDayFirst(*opening) + ")",
                    TillRefusal::About::Date);
}

}  // namespace

RowBuilder& EntryOfOpenTill(Context& context, std::int32_t till, const std::string& day) {
  RequireTillOpen(context.Database(), till);
  const TillClock clock(context.Database(), till);
  clock.RequireNoFuture();
  if (!day.empty()) RequireDayOf(context, clock, till, Variant(day).ToDate());
  const std::string date = day.empty() ? clock.Moment() : day;
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  if (!date.empty()) row.Add("DiaCaj_Fecha", ValueKind::Date, Variant(date));
  return row;
}

void InsertOrThrow(RowBuilder& row) {
  std::string error;
  if (!row.Insert(error)) throw DatabaseError(error);
}

void UpdateOrThrow(RowBuilder& row) {
  std::string error;
  if (!row.Update(error)) throw DatabaseError(error);
}

std::int32_t LastEntry(Context& context) {
  return context.Database().Execute("SELECT MAX(DiaCaj_Id) FROM DiaCaj")->Field(0).ToInt32();
}

void LinkTicket(Context& context, std::int32_t entry, std::int32_t ticket, double euros,
                const Variant& note) {
  RowBuilder& row = RowInTransaction(context, "Tco");
  row.Add("Tco_IdDiaCaj", ValueKind::Whole, Variant(entry));
  row.Add("Tco_IdCav", ValueKind::Whole, Variant(ticket));
  row.Add("Tco_Importe", ValueKind::Amount, Variant(euros));
  row.Add("Tco_Obs", ValueKind::Text, note);
  InsertOrThrow(row);
}

}  // namespace tpv
