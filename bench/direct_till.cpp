#include "bench/direct_till.h"

namespace tpv::bench {

void DirectTill::StartSale() {
  store_.Run("BEGIN IMMEDIATE");
  TakeNumber();
  insert_sale_();
  sale_ = sqlite3_last_insert_rowid(store_.handle());
  store_.Run("COMMIT");
  Redraw();
}

void DirectTill::Redraw() {
  lines_(sale_);
  totals_(sale_);
}

void DirectTill::Scan(const std::string& code) {
  const auto article = static_cast<std::int64_t>(article_(code));
  parameters_();
  tax_(3);
  store_.Run("BEGIN IMMEDIATE");
  collected_(sale_);  // nobody else may have collected it
  insert_line_(sale_, article, code);
  move_stock_(static_cast<std::int64_t>(newest_line_()), article);
  stock_(article);
  take_stock_(article);
  store_.Run("COMMIT");
  Redraw();
}

void DirectTill::Finish() {
  parameters_();
  for (Prepared* list : {&street_types_, &countries_, &provinces_, &methods_}) (*list)();
  totals_(sale_);
  customer_();
  debt_(1);
  store_.Run("BEGIN IMMEDIATE");
  update_sale_(sale_);
  collected_(sale_);
  till_state_();
  till_clock_();
  insert_entry_();
  link_(newest_entry_(), sale_);
  store_.Run("COMMIT");
  parameters_();
  ticket_total_(sale_);
  ticket_lines_(sale_);
  ticket_payment_(sale_);
  sale_ = -1;
  Redraw();
}

// Numbers used past the counter push it on.
void DirectTill::TakeNumber() {
  number_();
  highest_number_();
  counter_();
}

void DirectTill::TillState() {
  till_state_();
  last_ticket_();
  store_.Run("BEGIN IMMEDIATE");
  TakeNumber();
  store_.Run("ROLLBACK");
}

double DirectTill::Debt(int customer) { return debt_(customer); }

}  // namespace tpv::bench
