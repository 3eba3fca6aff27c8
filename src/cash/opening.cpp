#include "cash/opening.h"

#include "base/mask.h"
#include "context/context.h"
#include "data/codes.h"
#include "data/journal.h"
#include "data/till_clock.h"
#include "data/till_state.h"

namespace tpv {

namespace {

// What DiaCaj_Fecha gets, "" where the store's clock will do.
std::string DateOf(Context& context, const TillOpening& opening) {
  const TillClock clock(context.Database(), opening.till);
  clock.RequireNoFuture();
  if (opening.day.empty()) return clock.NewestMoment();
  const DateTime day = Variant(opening.day).ToDate();
  clock.RequireNotAfterToday(day, "La fecha de apertura es posterior a hoy");
  const auto closure = NewestEvent(context.Database(), opening.till, JournalEvent::Closure);
  if (!closure || day > *closure) return opening.day;
  throw TillRefusal("La fecha de apertura es anterior al último cierre de la caja (" +
                        FormatDate(*closure, "dd/mm/yyyy hh:mm") + ")",
                    TillRefusal::About::Date);
}

void Insert(Context& context, const TillOpening& opening, const std::string& date) {
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  if (!date.empty()) row.Add("DiaCaj_Fecha", ValueKind::Date, Variant(date));
  row.Add("DiaCaj_IdUsu", ValueKind::Whole, Variant(context.MyBd->IdUsuario()));
  row.Add("DiaCaj_IdAge", ValueKind::Whole, Variant(context.IdAgente));
  row.Add("DiaCaj_Caja", ValueKind::Whole, Variant(opening.till));
  row.Add("DiaCaj_IdCliPr", ValueKind::Whole, Variant(0));
  row.Add("DiaCaj_Modo", ValueKind::Whole, Variant(static_cast<int>(PaymentMode::Cash)));
  row.Add("DiaCaj_Obs", ValueKind::Literal, Variant("Null"));
  row.Add("DiaCaj_Tipo", ValueKind::Whole, Variant(static_cast<int>(JournalEvent::Opening)));
  row.Add("DiaCaj_SaldoIni", ValueKind::Amount, Variant(opening.initial));
  for (const char* column : {"DiaCaj_CobMet", "DiaCaj_CobTar", "DiaCaj_Pagos", "DiaCaj_Ret"}) {
    row.Add(column, ValueKind::Amount, Variant(0.0));
  }
  InsertOrThrow(row);
}

}  // namespace

void RequireDay(Context& context, const TillOpening& opening) { DateOf(context, opening); }

void StoreOpening(Context& context, const TillOpening& opening) {
  Transaction transaction(context.Database());
  RequireTillClosed(context.Database(), opening.till);
  Insert(context, opening, DateOf(context, opening));
  transaction.Commit();
}

}  // namespace tpv
