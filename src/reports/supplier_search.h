// The supplier search dialog, opened by the host alone.
#pragma once

namespace tpv {

struct Context;

// Returns whether the operator picks a supplier or closes; the choice is not used.
void SearchSupplier(Context& context);

}  // namespace tpv
