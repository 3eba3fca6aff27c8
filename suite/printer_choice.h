// ZRSPOOL.ClsSpool: choosing the printer for tickets.
#pragma once

#include "platform/ports.h"
#include "suite/late_bound.h"

namespace tpv::suite {

class PrinterChoice : public LateBound {
 public:
  // The ports outlive the object.
  explicit PrinterChoice(Ports& ports);

 private:
  Variant SelectPrinter();

  Ports& ports_;
};

}  // namespace tpv::suite
