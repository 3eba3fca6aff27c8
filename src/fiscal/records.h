// Reading the store's invoice records back, and keeping what the agency said of them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fiscal/record.h"

namespace tpv {
class Connection;
}

// All throw DatabaseError.
namespace tpv::fiscal {

// In the order of the chain, from that position on, `most` at most.
std::vector<Record> RecordsFrom(Connection& connection, std::int32_t position, std::size_t most);
// Those issued on days from `from` to `to`, both included, one by one: there may be many.
void ForEachRecord(Connection& connection, const std::optional<DateTime>& from,
                   const std::optional<DateTime>& to, const std::function<void(const Record&)>& visit);

// The registration of a ticket (Cav_Id) or an invoice (Fav_Id) that is in force, a
// mended one last; nullopt when there is none or it is cancelled. Only what it is of whom, when
// and how much: what its code on paper says.
std::optional<Record> RecordOfTicket(Connection& connection, std::int32_t ticket);
std::optional<Record> RecordOfInvoice(Connection& connection, std::int32_t invoice);

// How many records wait for the agency, and since when.
struct Waiting {
  std::int64_t count = 0;
  std::string oldest;  // moment of the first; "" for none
};
Waiting CountWaiting(Connection& connection);
// The first that wait, all for one agency and of one issuer: what one message may hold.
std::vector<Record> NextToSend(Connection& connection, std::size_t most);
// The first one behind a record that goes to another agency or is another issuer's; none when
// there is no such record.
std::vector<Record> FirstOfAnother(Connection& connection, const Record& record);

// Rejected or accepted with errors, and without a later record of the number, oldest first.
std::vector<Record> RecordsToMend(Connection& connection);

// Keeps the agency's answer to the first record that waits, in the caller's transaction.
// Throws DatabaseError for any other record: answers come in the order of the chain.
void StoreReply(Connection& connection, std::int32_t position, const Reply& reply);

}  // namespace tpv::fiscal
