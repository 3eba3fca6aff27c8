// ZRComunicaciones.ZRCOMU: sending e-mail.
#pragma once

#include "platform/ports.h"
#include "suite/late_bound.h"

namespace tpv::suite {

class Communications : public LateBound {
 public:
  explicit Communications(Ports& ports);

 private:
  // True when the server took the mail; otherwise the reason is written back.
  Variant Send(Variant& error);

  Ports& ports_;
};

}  // namespace tpv::suite
