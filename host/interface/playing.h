// A scenario's text played on a host's till.
#pragma once

#include <iosfwd>
#include <string>

struct zrtpv_till;

namespace tpv::interface {

// True when every expectation held. Throws Fault and ScriptError.
bool PlayOn(zrtpv_till& till, const std::string& script, std::ostream& transcript);

}  // namespace tpv::interface
