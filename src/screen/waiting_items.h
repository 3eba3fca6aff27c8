// The status band's word on what waits too long to leave the till: invoice records, and
// paper.
#pragma once

#include <vector>

#include "platform/ports.h"
#include "platform/ui/form.h"

namespace tpv {

// Adds nothing while all is sent in time, and printed.
void AddWaiting(const Ports& ports, std::vector<ui::StatusItem>& items);

}  // namespace tpv
