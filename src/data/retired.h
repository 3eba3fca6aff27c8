// Records that the shop uses no more (an article, a customer, a seller…) but that its
// tickets name: they stay, marked, and are not offered.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace tpv {

class Connection;
struct Context;

// `table` is the schema's name of the record's table: "ART", "Cli", "Age". All throw
// DatabaseError.
bool IsRetired(Connection& connection, std::string_view table, std::int32_t id);
std::set<std::int32_t> RetiredOf(Connection& connection, std::string_view table);
// The same for what a till asks at every scan and sale.
bool IsRetired(Context& context, std::string_view table, std::int32_t id);
std::set<std::int32_t> RetiredOf(Context& context, std::string_view table);
// The condition of a statement that leaves them out: "art_id NOT IN (…)".
std::string NotRetired(std::string_view table, std::string_view id_column);

// Marks it from today on, or takes the mark off; doing it twice changes nothing. The
// caller's transaction, if any, holds it.
void Retire(Connection& connection, std::string_view table, std::int32_t id);
void TakeBack(Connection& connection, std::string_view table, std::int32_t id);

}  // namespace tpv
