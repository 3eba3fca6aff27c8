// Whether a till may work: it is open while its newest journal entry is not a
// closure; a till without entries is closed.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tpv {

class Connection;

// The till that a field's text names: 1 to 32767.
std::optional<std::int16_t> TillNumber(std::string_view till_field);

// `till_field` is the till field's text; what names no till counts as closed,
// without asking the store.
bool TillIsOpen(Connection& connection, std::string_view till_field);

}  // namespace tpv
