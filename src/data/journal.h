// Writing the cash journal: entries and the tickets that they pay. All of it
// inside the caller's transaction.
#pragma once

#include <cstdint>
#include <string>

#include "context/database_object.h"

namespace tpv {

struct Context;

// A row builder on `table` that joins the transaction already open.
RowBuilder& RowInTransaction(Context& context, const char* table);

// An entry of an open till, started: its date too where the store's clock will not
// do. `day` is a date field's text, "" for now. Throws TillRefusal for a till that
// is closed, and for a day before its opening's or after today.
RowBuilder& EntryOfOpenTill(Context& context, std::int32_t till, const std::string& day = {});

// The builder's failure as a DatabaseError with its reason.
void InsertOrThrow(RowBuilder& row);
void UpdateOrThrow(RowBuilder& row);

// DiaCaj_Id of the entry inserted last: the caller's own while it holds the
// store's lock.
std::int32_t LastEntry(Context& context);

// Applies `euros` of an entry to a ticket (Cav_Id). `note` may be null.
void LinkTicket(Context& context, std::int32_t entry, std::int32_t ticket, double euros,
                const Variant& note);

}  // namespace tpv
