// Which page of the operator's manual tells of a screen.
#pragma once

#include <string_view>

namespace tpv {

// "venta"; "" for the contents, where no page tells of it.
std::string_view ManualPageOf(std::string_view form_name);

}  // namespace tpv
