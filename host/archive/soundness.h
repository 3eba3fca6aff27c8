// Whether a store's file is whole and its books hold.
#pragma once

#include <string>

namespace tpv {
class Clock;
}

namespace tpv::archive {

// What the engine and the store's own check find broken, "" for a sound one. Throws
// DatabaseError when it cannot be opened.
std::string WhatIsBroken(const std::string& path, const Clock& clock);

}  // namespace tpv::archive
