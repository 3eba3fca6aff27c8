// The chain of invoice records among what a store's check looks at.
#pragma once

#include <cstdint>
#include <vector>

#include "host/store_check.h"

namespace tpv {

struct FiscalCheck {
  std::int64_t records = 0;
  std::vector<StoreFinding> findings;  // a rule each that is broken; rows are positions
};

// Throws DatabaseError, also where there are records and the build cannot fingerprint.
FiscalCheck CheckFiscal(Connection& connection);

}  // namespace tpv
