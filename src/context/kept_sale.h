// Keeps a screen's sale, customer, seller and till while another
// screen, which works with its own, is open on top of it.
#pragma once

#include "context/context.h"

namespace tpv {

class KeptSale {
 public:
  explicit KeptSale(Context& context)
      : context_(context),
        sale_(context.IdAlbaran),
        keyed_since_(context.keyed_since),
        customer_(context.IdCliente),
        agent_(context.IdAgente),
        till_(context.Caja) {}
  ~KeptSale() {
    context_.IdAlbaran = sale_;
    context_.keyed_since = keyed_since_;
    context_.IdCliente = customer_;
    context_.IdAgente = agent_;
    context_.Caja = till_;
  }
  KeptSale(const KeptSale&) = delete;
  KeptSale& operator=(const KeptSale&) = delete;

 private:
  Context& context_;
  std::int32_t sale_;
  std::optional<DateTime> keyed_since_;
  std::int32_t customer_;
  std::int32_t agent_;
  std::int16_t till_;
};

}  // namespace tpv
