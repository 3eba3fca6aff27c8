// Whether a till may work: it is open while its newest journal entry is not a
// closure; a till without entries is closed.
#pragma once

#include <string_view>

namespace tpv {

class Connection;

// `till_field` is the till field's text; what is no whole number names no till
// and counts as closed, without asking the store.
bool TillIsOpen(Connection& connection, std::string_view till_field);

}  // namespace tpv
