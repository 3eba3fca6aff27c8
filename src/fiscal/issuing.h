// What makes a record: a finished ticket or return, an invoice, the deletion of a
// registered ticket. Nothing where the store makes no records. All of it inside the
// caller's transaction, together with the money and the marks.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fiscal/chain.h"

namespace tpv::fiscal {

struct Buyer {
  std::string name;
  std::string document;
};

// All throw RecordRefused and DatabaseError.

// Puts the buyer of an invoice into its record; refuses one without name or tax number.
void SetBuyer(Record& record, const Buyer& buyer);

// The ticket `ticket` (Cav_Id) is finished: its F2, or its R5 when it takes goods back.
// None for one without lines, one that is registered, that an invoice includes or that
// some till still keys.
// `originals` are the tickets whose lines it takes back, where they are known.
void RecordTicket(const Desk& desk, std::int32_t ticket, const std::vector<std::int32_t>& originals = {});

// An invoice (Fav_Id) of the tickets that are marked with it: F3 when some of them are
// registered, else F1, or R1 when it gives money back.
struct IssuedInvoice {
  std::int32_t id = 0;
  std::string number;  // series, "/" and number
  std::string date;    // dd/mm/yyyy
  Buyer buyer;
};
void RecordInvoice(const Desk& desk, const IssuedInvoice& invoice);

// The ticket is about to be deleted: the cancellation of its record, if it has one.
void RecordDeletion(const Desk& desk, std::int32_t ticket);

// The same before the operator is asked for anything: what forbids an invoice to this
// buyer, "" for nothing.
std::string InvoiceRefusal(const Desk& desk, const Buyer& buyer);

}  // namespace tpv::fiscal
