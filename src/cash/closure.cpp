#include "cash/closure.h"

#include "context/context.h"
#include "data/codes.h"
#include "data/journal.h"
#include "platform/database.h"

namespace tpv {

namespace {

void InsertClosure(Context& context, const Closure& closure) {
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  if (closure.server_date) {
    row.Add("DiaCaj_Fecha", ValueKind::Literal, Variant("Getdate()"));
  } else {
    row.Add("DiaCaj_Fecha", ValueKind::Date, Variant(closure.date));
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

void StampCollection(Context& context, std::int32_t entry, std::int32_t closure_id) {
  RowBuilder& row = RowInTransaction(context, "DiaCaj");
  row.Add("DiaCaj_IdCierre", ValueKind::Whole, Variant(closure_id));
  row.Where(" Where DiaCaj_Id=" + std::to_string(entry));
  std::string unexamined;
  if (!row.Update(unexamined)) throw ClosureFailed("Error actualizando diario de cierres ", true);
}

void StampCollections(Context& context, const Closure& closure, std::int32_t closure_id,
                      const ClosureProgress& progress) {
  constexpr std::size_t kStep = 500;
  const std::size_t all = closure.collections.size();
  for (std::size_t i = 0; i < all; ++i) {
    if (i % kStep == 0 && i > 0) progress(i, all);
    StampCollection(context, closure.collections[i], closure_id);
  }
}

}  // namespace

std::int32_t StoreClosure(Context& context, const ClosingPeriod& period, const Closure& closure,
                          const ClosureProgress& progress) {
  try {
    Transaction transaction(context.Database());
    if (period.Mark() != closure.mark) {
      throw PeriodChanged("Los movimientos de la caja han cambiado. Revise los importes");
    }
    InsertClosure(context, closure);
    const std::int32_t id = LastEntry(context);
    StampCollections(context, closure, id, progress);
    period.StampPayments(std::to_string(id));
    transaction.Commit();
    return id;
  } catch (const ClosureFailed&) {
    throw;
  } catch (const PeriodChanged&) {
    throw;
  } catch (const std::exception& error) {
    throw ClosureFailed(error.what(), true);
  }
}

}  // namespace tpv
