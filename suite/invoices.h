// ZRFACTUVEN.ZRFACVENTAS: invoices of tickets, numbered per series, with the lines
// of the tickets that carry their id and totals by tax rate.
#pragma once

#include "platform/ports.h"
#include "suite/late_bound.h"

namespace tpv {
class Connection;
}

namespace tpv::suite {

class Invoices : public LateBound {
 public:
  explicit Invoices(Ports& ports);

 private:
  Connection& Database();
  Variant Create();
  std::int32_t InsertHeader();
  Variant ComputeTotals();
  void GatherLines(const std::string& invoice);
  double StoreRates(const std::string& invoice);
  Variant Store();
  Variant Issue(std::int32_t copies);

  Ports& ports_;
};

}  // namespace tpv::suite
