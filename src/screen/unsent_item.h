// The status band's word on invoice records that wait too long.
#pragma once

#include <vector>

#include "platform/ports.h"
#include "platform/ui/form.h"

namespace tpv {

// Adds nothing while all are sent in time.
void AddUnsentRecords(const Ports& ports, std::vector<ui::StatusItem>& items);

}  // namespace tpv
