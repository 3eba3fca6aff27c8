// SQLite's data definition statements for the shop's schema.
#pragma once

#include <string>
#include <vector>

#include "data/schema.h"

namespace tpv {

// What is there already stays as it is.
std::vector<std::string> SqliteDdl(schema::Home home);

}  // namespace tpv
