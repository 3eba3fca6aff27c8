// Texts that should never matter, for whatever takes texts.
#pragma once

#include <string>
#include <vector>

namespace tpv::torture {

// Those of hostile_text.txt, escapes resolved.
std::vector<std::string> HostileTexts();

}  // namespace tpv::torture
