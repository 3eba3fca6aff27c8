// A busy till's closing against the same writes done by hand.
#pragma once

#include "bench/direct_store.h"
#include "bench/harness.h"
#include "bench/till.h"

namespace tpv::bench {

Row CompareClosing(Till& till, DirectStore& store, int entries, int runs);

}  // namespace tpv::bench
