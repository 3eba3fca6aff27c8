// Sums as the text in which a store keeps them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "panel/sums.h"

namespace tpv::panel {

std::string ToText(const Sums& sums);
// Nullopt for what ToText of this version did not write.
std::optional<Sums> SumsFrom(std::string_view text);

}  // namespace tpv::panel
