// The kinds of tax as a choice offers them.
#pragma once

#include "data/tax_kinds.h"
#include "platform/ui/entries.h"

namespace tpv::office {

// "1 - 21 %", those of today; `first` stands before them where it is not empty.
ui::Entries TaxEntries(const TaxKinds& taxes, const std::string& first = {});

}  // namespace tpv::office
