#include "bench/direct_lists.h"

namespace tpv::bench {

DirectLists::DirectLists(DirectStore& store, const DateTime& first, const DateTime& last)
    : store_(store), from_(ToIso(first)), to_(ToIso(last).substr(0, 10) + " 23:59:59.000") {}

void DirectLists::Pending() { all_pending_(); }

void DirectLists::Closures() { closures_(from_, to_); }

void DirectLists::Journal() {
  count_(from_, to_);
  lines_(from_, to_);
  sales_(from_, to_);
  collected_(from_, to_);
  collections_(from_, to_);
}

void DirectLists::Panel(const DateTime& first_before, const DateTime& last_before) {
  const std::string from = ToIso(first_before);
  const std::string to = ToIso(last_before).substr(0, 10) + " 23:59:59.000";
  sold_(from_, to_);
  sold_(from, to);
  collected_(from_, to_);
  collected_(from, to);
  owed_();
  stock_(from_, to_);
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
  store_.Run("BEGIN IMMEDIATE");
  for (Prepared* undo : {&unmark_, &forget_lines_, &forget_rates_, &forget_due_, &forget_invoice_}) {
    (*undo)(invoices_before_);
  }
  store_.Run("COMMIT");
}

}  // namespace tpv::bench
