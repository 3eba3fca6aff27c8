#include "data/till_clock.h"

#include "data/sql_text.h"
#include "data/till_state.h"

namespace tpv {

namespace {

std::string NewestOf(std::int32_t till) {
  return "SELECT MAX(DiaCaj_Fecha) FROM DiaCaj WHERE DiaCaj_Caja = " +
         sql::Number(std::int64_t{till});
}

std::optional<DateTime> Moment(const Variant& value) {
  return value.IsNull() ? std::nullopt : std::optional(value.ToDate());
}

}  // namespace

TillClock::TillClock(Connection& connection, std::int32_t till) {
  const auto row =
      connection.Execute("SELECT Getdate() AS Ahora, (" + NewestOf(till) + ") AS Ultimo");
  now_ = row->Field("Ahora").ToDate();
  newest_ = tpv::Moment(row->Field("Ultimo"));
}

void TillClock::RequireNoFuture() const {
  if (!newest_ || StartOfDay(*newest_) <= now_) return;
  throw TillRefusal("El último apunte de la caja es del " + ToDayFirst(*newest_) +
                        ", posterior a hoy. Revise la fecha del equipo o llame a soporte",
                    TillRefusal::About::Date);
}

void TillClock::RequireNotAfterToday(const DateTime& day, const char* refusal) const {
  if (StartOfDay(day) > now_) throw TillRefusal(refusal, TillRefusal::About::Date);
}

std::string TillClock::Moment() const {
  return newest_ && now_ < *newest_ ? BehindNewest() : std::string();
}

std::string TillClock::NewestMoment() const {
  return newest_ && now_ <= *newest_ ? BehindNewest() : std::string();
}

std::string TillClock::BehindNewest() const {
  DateTime second = newest_.value();
  second.millisecond = 0;
  return ToDayFirstSeconds(AddSeconds(second, 1));
}

std::optional<DateTime> NewestEvent(Connection& connection, std::int32_t till, JournalEvent event) {
  const std::string of_kind = " AND DiaCaj_Tipo = " + std::to_string(static_cast<int>(event));
  return Moment(connection.Execute(NewestOf(till) + of_kind)->Field(0));
}

}  // namespace tpv
