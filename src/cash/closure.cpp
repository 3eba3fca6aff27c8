#include "cash/closure.h"

#include "base/mask.h"
#include "context/context.h"
#include "data/codes.h"
#include "data/journal.h"
#include "data/sales_in_progress.h"
#include "data/till_clock.h"
#include "data/till_state.h"
#include "platform/database.h"

namespace tpv {

namespace {

// A closure of today is of now. One of a day before gets a time behind what the till
// did on that day, if anything.
std::string MomentOn(const DateTime& day, const std::string& typed, const TillClock& clock) {
  clock.RequireNotAfterToday(day, "La fecha del cierre es posterior a hoy");
  if (StartOfDay(day) == StartOfDay(clock.now())) return clock.NewestMoment();
  const DateTime newest = clock.newest().value_or(DateTime{});
  if (StartOfDay(day) > newest) return typed;
  if (StartOfDay(day) == StartOfDay(newest)) return clock.BehindNewest();
  throw TillRefusal("La fecha del cierre es anterior al último movimiento de la caja (" +
                        FormatDate(newest, "dd/mm/yyyy hh:mm") + ")",
                    TillRefusal::About::Date);
}

// What DiaCaj_Fecha gets, "" for the store's clock.
std::string DateOf(Context& context, const Closure& closure) {
  const TillClock clock(context.Database(), context.Caja);
  clock.RequireNoFuture();
  if (closure.server_date) return clock.NewestMoment();
  return MomentOn(Variant(closure.date).ToDate(), closure.date, clock);
}

void InsertClosure(Context& context, const Closure& closure, const std::string& date) {
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  if (date.empty()) {
    row.Add("DiaCaj_Fecha", ValueKind::Literal, Variant("Getdate()"));
  } else {
    row.Add("DiaCaj_Fecha", ValueKind::Date, Variant(date));
  }
  row.Add("DiaCaj_IdUsu", ValueKind::Whole, Variant(context.MyBd->IdUsuario()));
  row.Add("DiaCaj_IdAge", ValueKind::Whole, Variant(context.IdAgente));
  row.Add("DiaCaj_Caja", ValueKind::Whole, Variant(context.Caja));
  row.Add("DiaCaj_IdCliPr", ValueKind::Whole, Variant(0));
  row.Add("DiaCaj_Modo", ValueKind::Whole, Variant(static_cast<int>(PaymentMode::Cash)));
  row.Add("DiaCaj_Obs", ValueKind::Text, Variant("Cierre de caja " + closure.date));
  row.Add("DiaCaj_Tipo", ValueKind::Whole, Variant(static_cast<int>(JournalEvent::Closure)));
  row.Add("DiaCaj_SaldoIni", ValueKind::Amount, Variant(closure.initial));
  row.Add("DiaCaj_CobMet", ValueKind::Amount, Variant(closure.cash));
  row.Add("DiaCaj_CobTar", ValueKind::Amount, Variant(closure.card));
  row.Add("DiaCaj_Pagos", ValueKind::Amount, Variant(closure.paid));
  row.Add("DiaCaj_Ret", ValueKind::Amount, Variant(closure.withdrawn));
  std::string error;
  if (!row.Insert(error)) throw ClosureFailed(error, false);
}

// Its lines and its payment would be of nobody's day.
void RequireNoSaleInProgress(Context& context) {
  const auto sales = SalesInProgress(context.Database(), context.Caja);
  if (sales.empty()) return;
  throw PeriodChanged("La caja tiene una venta sin terminar (" + Described(sales.front()) +
                      "). Termínela, apárquela o cancélela antes de cerrar. Si quedó de un programa que "
                      "se apagó a medias, recupérela en la pantalla de venta");
}

void StampCollection(Context& context, std::int32_t entry, std::int32_t closure_id) {
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  row.Add("DiaCaj_IdCierre", ValueKind::Whole, Variant(closure_id));
  row.Where(" Where DiaCaj_Id=" + std::to_string(entry));
  std::string unexamined;
  if (!row.Update(unexamined)) throw ClosureFailed("Error actualizando diario de cierres ", true);
}

}  // namespace

void RequireDay(Context& context, const Closure& closure) { DateOf(context, closure); }

std::int32_t StoreClosure(Context& context, const ClosingPeriod& period, const Closure& closure) {
  try {
    Transaction transaction(context.Database());
    RequireTillOpen(context.Database(), context.Caja);
    const std::string date = DateOf(context, closure);
    if (period.Mark() != closure.mark) {
      throw PeriodChanged("Los movimientos de la caja han cambiado. Revise los importes");
    }
    RequireNoSaleInProgress(context);
    InsertClosure(context, closure, date);
    const std::int32_t id = LastEntry(context);
    for (const std::int32_t entry : closure.collections) StampCollection(context, entry, id);
    period.StampPayments(std::to_string(id));
    if (closure.count) StoreCashCount(context, id, *closure.count);
    transaction.Commit();
    return id;
  } catch (const ClosureFailed&) {
    throw;
  } catch (const PeriodChanged&) {
    throw;
  } catch (const TillRefusal&) {
    throw;
  } catch (const std::exception& error) {
    throw ClosureFailed(error.what(), true);
  }
}

}  // namespace tpv
