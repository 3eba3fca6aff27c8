// What a till that died left in progress, for the technician: to see, and to turn
// into tickets like any other.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

class Connection;

// "1234 T/361, del 24/11/2026 10:31, caja 2, vendedor 3", a line a sale in progress.
std::string SalesInProgressText(Connection& connection);

// Takes a sale (Cav_Id) off the register: one with lines stays as a pending ticket,
// an empty one is deleted. What was done, for the technician. Throws DatabaseError
// when it is not in progress.
std::string ReleaseSale(Connection& connection, std::int32_t sale_id);

}  // namespace tpv
