// What a deleted ticket leaves behind: that it was there, its lines and amount, and who
// took it away. The program only adds to it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tpv {

class Connection;
struct Context;

// What will no longer add up without the ticket: the invoice that names it, the closures
// that cover its payments. In Spanish, a sentence each.
std::vector<std::string> BooksRelyingOn(Connection& connection, std::int32_t sale_id);

// Inside the deletion's transaction and before its statements. A ticket that is gone
// already leaves nothing. Throws DatabaseError.
void TraceDeletion(Context& context, std::int32_t sale_id);

// The select over what was deleted on those days (made by BetweenDays): when, ticket, till
// and user that deleted it, the ticket's own date and till, euros with tax, its lines.
std::string DeletedTickets(const std::string& days);

}  // namespace tpv
