// Where the difference of a counted drawer may come from: entries of the period that
// would explain it. It proposes; nobody's books are changed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tpv {

class Recordset;

// An entry of the period, amounts in cents.
struct DrawerEntry {
  std::string what;  // "Cobro A/12 de las 10:30"
  bool payment_out = false;
  std::int64_t handed_over = 0;  // cash; of a payment out: what was paid
  std::int64_t change = 0;
  std::int64_t card = 0;
  std::int64_t cash() const { return handed_over - change; }
};

struct Proposal {
  std::string what;    // the entry, "" where none is meant
  std::string reason;  // in Spanish, for whoever counted
};

// The period's entries out of ClosingPeriod::Entries.
std::vector<DrawerEntry> ReadDrawerEntries(Recordset& rows);

// Proposals for `difference` cents (counted less expected, not 0), the likeliest first;
// `initial` is what the till was opened with.
std::vector<Proposal> ExplainDifference(std::int64_t difference, std::int64_t initial,
                                        const std::vector<DrawerEntry>& entries);

}  // namespace tpv
