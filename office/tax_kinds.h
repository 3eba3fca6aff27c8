// The taxes of the articles' kinds as they are today.
#pragma once

#include <map>

#include "sale/article_lookup.h"

namespace tpv {
class Connection;
}

namespace tpv::office {

// By art_tiva: the rows that the sale screen uses today.
using TaxKinds = std::map<int, Tax>;
TaxKinds TaxKindsToday(Connection& connection);

}  // namespace tpv::office
