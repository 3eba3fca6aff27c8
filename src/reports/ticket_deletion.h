// Taking a stored ticket away with its lines, its payments and their entries in
// the cash journal.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

class Connection;
struct Context;

// The journal entry that pays this ticket together with others ("nº 12 del
// 24/11/2026 10:30"); "" when every entry of the ticket pays it alone.
std::string SharedCollection(Connection& connection, std::int32_t sale_id);

// Deletes header, lines, the entries that paid the ticket and their links, gives
// its stock back, takes it off the register of sales in progress and cancels the
// record of a registered ticket, which stays. The caller holds the transaction. Throws DatabaseError and ObjectError.
void DeleteTicket(Context& context, std::int32_t sale_id);

}  // namespace tpv
