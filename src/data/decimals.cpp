#include "data/decimals.h"

#include "context/context.h"

namespace tpv {

namespace {
constexpr int kUsual = 2;
}

int PriceDecimals(const Context& context) { return context.Parameter("par_decpre").IntOr(kUsual); }

int UnitDecimals(const Context& context) { return context.Parameter("par_deccan").IntOr(kUsual); }

}  // namespace tpv
