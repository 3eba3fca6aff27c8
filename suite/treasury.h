// ZRTESORERIA.ZRTESORE: the due dates of an invoice.
#pragma once

#include "suite/late_bound.h"

namespace tpv::suite {

struct DueDate;

class Treasury : public LateBound {
 public:
  Treasury();

 private:
  Variant StoreDueDates();
  void Insert(const DueDate& due, int number);
};

}  // namespace tpv::suite
