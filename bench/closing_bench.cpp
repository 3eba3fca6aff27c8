#include "bench/closing_bench.h"

#include "cash/closure.h"

namespace tpv::bench {

namespace {

constexpr int kTill = 99;

// Collections, and one payment out in fifty.
void FillTill(DirectStore& store, int entries) {
  Prepared insert(store,
                  "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, "
                  "DiaCaj_IdCliPr, DiaCaj_Tipo, DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Tarjeta, "
                  "DiaCaj_Devolucion, DiaCaj_Descuento, DiaCaj_Cobrado, DiaCaj_SaldoIni) VALUES "
                  "(tpv_getdate(), 99, 1, 1, 1, ?, 1, 10, 0, 0.8, 0, 9.2, 100)");
  store.Run("BEGIN IMMEDIATE");
  insert(0);
  for (int i = 0; i < entries; ++i) insert(i % 50 == 49 ? 3 : 1);
  store.Run("COMMIT");
}

void Reopen(DirectStore& store) {
  store.Run("UPDATE DiaCaj SET DiaCaj_IdCierre = 0 WHERE DiaCaj_Caja = 99 AND DiaCaj_IdCierre <> 0");
  store.Run("DELETE FROM DiaCaj WHERE DiaCaj_Caja = 99 AND DiaCaj_Tipo = 9");
}

class DirectClosing {
 public:
  explicit DirectClosing(DirectStore& store) : store_(store) {}

  void Close(const std::vector<std::int32_t>& collections) {
    store_.Run("BEGIN IMMEDIATE");
    insert_();
    const int closure = static_cast<int>(newest_());
    for (const int entry : collections) stamp_(closure, entry);
    stamp_payments_(closure);
    store_.Run("COMMIT");
  }

 private:
  DirectStore& store_;
  Prepared insert_{store_,
                   "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_Caja, "
                   "DiaCaj_IdCliPr, DiaCaj_Modo, DiaCaj_Obs, DiaCaj_Tipo, DiaCaj_SaldoIni, "
                   "DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret) VALUES (tpv_getdate(), 1, 1, "
                   "99, 0, 1, 'Cierre de caja', 9, 100, 0, 0, 0, 0)"};
  Prepared newest_{store_, "SELECT MAX(DiaCaj_Id) FROM DiaCaj"};
  Prepared stamp_{store_, "UPDATE DiaCaj SET DiaCaj_IdCierre = ? WHERE DiaCaj_Id = ?"};
  Prepared stamp_payments_{store_,
                           "UPDATE DiaCaj SET DiaCaj_IdCierre = ? WHERE DiaCaj_Caja = 99 AND DiaCaj_Tipo "
                           "= 3 AND DiaCaj_IdCierre = 0"};
};

std::vector<std::int32_t> Collections(const ClosingPeriod& period) {
  std::vector<std::int32_t> entries;
  const auto rows = period.Collections();
  for (; !rows->Eof(); rows->MoveNext()) entries.push_back(rows->Field("Id").ToInt32());
  return entries;
}

}  // namespace

Row CompareClosing(Till& till, DirectStore& store, int entries, int runs) {
  FillTill(store, entries);
  Context& context = till.context();
  context.Caja = kTill;
  const ClosingPeriod period(context, kTill, LastOpening(context, kTill)->when);
  Closure closure;
  closure.collections = Collections(period);
  DirectClosing direct(store);
  const auto reopen = [&] {
    Reopen(store);
    closure.mark = period.Mark();
  };
  return Compare({"close a till of " + std::to_string(entries) + " entries", 1.5, 1.2}, runs,
                 {reopen, [&] { StoreClosure(context, period, closure); }},
                 {reopen, [&] { direct.Close(closure.collections); }});
}

}  // namespace tpv::bench
