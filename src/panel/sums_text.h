// Sums as the text in which a store keeps them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "panel/sums.h"

namespace tpv::panel {

std::string ToText(const Sums& sums);
// Whether the text is one of this version from its beginning to its end.
bool IsWhole(std::string_view text);
// Nullopt for what ToText of this version did not write.
std::optional<Sums> SumsFrom(std::string_view text);

}  // namespace tpv::panel
