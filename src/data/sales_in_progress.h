// The register of the sales being keyed: which ticket, on which till, by whom and
// since when. A row is there from the transaction that creates the ticket to the
// one that finishes or gives it up, so what a dead till left is known by its row.
// A sale that was parked is no till's until one takes it up.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "platform/database.h"

namespace tpv {

struct SaleInProgress {
  std::int32_t sale = 0;  // Cav_Id
  std::string ticket;     // its reference
  std::int32_t till = kNoTill;
  std::int32_t agent = 0;
  DateTime since;  // never the same twice for a sale: who keys it knows it by this

  static constexpr std::int32_t kNoTill = 0;
  bool Parked() const { return till == kNoTill; }
};

// All inside the caller's transaction. `till` is a field's text. A sale without a
// row is no error to Unregister. All throw DatabaseError.
void RegisterSale(Connection& connection, std::int32_t sale_id, const std::string& till,
                  std::int32_t agent_id);
void UnregisterSale(Connection& connection, std::int32_t sale_id);
// Makes the sale `till`'s (kNoTill: parks it), in the register and on the ticket, and
// gives it a new `since`, so that whoever keyed it hears that it is his no more.
void HandSaleTo(Connection& connection, const SaleInProgress& sale, std::int32_t till);

// The register's row of a sale; nullopt when there is none.
std::optional<SaleInProgress> SaleInProgressOf(Connection& connection, std::int32_t sale_id);
// The sales in progress of a till, oldest first.
std::vector<SaleInProgress> SalesInProgress(Connection& connection, std::int32_t till);
// Those among the tickets of a condition on Cav: " WHERE …".
std::vector<SaleInProgress> SalesInProgressAmong(Connection& connection, const std::string& tickets);
// Of all tills, by Cav_Id.
std::set<std::int32_t> IdsOfSalesInProgress(Connection& connection);

// "T/361, del 24/11/2026 10:31", for the messages that refuse because of it.
std::string Described(const SaleInProgress& sale);

}  // namespace tpv
