// Something that went wrong behind the operator's back: a ticket that a printer did
// not take, a mail that did not go out.
#pragma once

#include <string>

namespace tpv {

struct Notice {
  std::string text;    // for the operator: what it was, what happened, where it lies now
  std::string detail;  // another program's own words, for the technician; "" without
};

}  // namespace tpv
