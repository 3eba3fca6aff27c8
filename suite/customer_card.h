// ZRCLIENTES.ZRCLI: the card on which a new customer is written down.
#pragma once

#include "platform/ports.h"
#include "suite/late_bound.h"

namespace tpv::suite {

class CustomerCard : public LateBound {
 public:
  explicit CustomerCard(Ports& ports);

 private:
  // The new customer's code, 0 when none was created; its id is then in IdCliente.
  Variant ShowNew();

  Ports& ports_;
};

}  // namespace tpv::suite
