// The invoice of one past ticket.
#pragma once

#include <string>
#include <vector>

#include "host/demo/fill.h"

namespace tpv::demo {

struct SoldLine {
  int article;
  double units, price, amount, total;  // the price and amount without tax
};

struct InvoicedSale {
  int invoice;  // its id and number
  int sale;
  int customer;
  std::string ticket;
  DateTime moment;
};

void FillInvoice(Connection& connection, const InvoicedSale& sale,
                 const std::vector<SoldLine>& lines);

}  // namespace tpv::demo
