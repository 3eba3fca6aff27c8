// Taking a stored ticket away with its lines, its payments and their entries in
// the cash journal.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

class Connection;

// The journal entry that pays this ticket together with others ("nº 12 del
// 24/11/2026 10:30"); "" when every entry of the ticket pays it alone.
std::string SharedCollection(Connection& connection, std::int32_t sale_id);

// Deletes header, lines, the entries that paid the ticket and their links. The
// caller holds the transaction. Throws DatabaseError.
void DeleteTicket(Connection& connection, std::int32_t sale_id);

}  // namespace tpv
