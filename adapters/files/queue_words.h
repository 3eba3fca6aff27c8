// What the printing system says in English, in the operator's words.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

// Why a printer keeps its documents waiting ("está parada"), from a queue's state and
// the reasons for it; "" when it prints.
std::string TroubleIn(std::string_view state, std::string_view reasons);

// Why a queue did not take a document, from what lp printed.
std::string RefusalIn(const std::string& queue, std::string_view said);

}  // namespace tpv
