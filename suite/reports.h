// ZRReportes.ZRReports: the suite's printed lists.
#pragma once

#include "platform/ports.h"
#include "suite/late_bound.h"

namespace tpv::suite {

class Reports : public LateBound {
 public:
  explicit Reports(Ports& ports);

 private:
  // The closures in `rows` as an A4 document; says where it is.
  Variant ShowClosures(Object& rows);

  Ports& ports_;
};

}  // namespace tpv::suite
