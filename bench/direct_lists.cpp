#include "bench/direct_lists.h"

namespace tpv::bench {

void DirectLists::Journal() {
  count_(from_, to_);
  lines_(from_, to_);
  sales_(from_, to_);
  collected_(from_, to_);
  collections_(from_, to_);
}

void DirectLists::SearchPeriod() {
  pending_count_(from_, to_);
  lines_(from_, to_);
  pending_(from_, to_);
}

void DirectLists::InvoicePeriod() {
  store_.Run("BEGIN IMMEDIATE");
  insert_invoice_(to_);
  const std::int64_t invoice = sqlite3_last_insert_rowid(store_.handle());
  mark_(invoice, from_, to_);
  gather_(invoice);
  const double total = total_(invoice);
  rates_(invoice);
  insert_due_(invoice, total);
  store_.Run("COMMIT");
  paper_(invoice);
}

void DirectLists::Forget() {
  store_.Run("UPDATE Cav SET Cav_Situa = 1, Cav_IdFactura = 0 WHERE Cav_Situa = 2");
  for (const char* table : {"DELETE FROM Fav", "DELETE FROM Fal", "DELETE FROM Fai", "DELETE FROM Vto"}) {
    store_.Run(table);
  }
}

}  // namespace tpv::bench
