// Opens the cash drawer the way the store's parameters say.
#pragma once

namespace tpv {

struct Context;

// Never fails because of a printer or port: an absent one leaves the drawer
// closed.
void OpenDrawer(Context& context);

}  // namespace tpv
