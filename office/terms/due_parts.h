// When the parts of an invoice fall due under a payment method.
#pragma once

#include <cstdint>
#include <vector>

namespace tpv {
class Connection;
}

namespace tpv::office {

struct DuePart {
  std::int32_t days = 0;  // after the invoice
  double share = 0;       // percent of the total; 0: parts without one share what is left
  bool operator==(const DuePart&) const = default;
};

// By days. All throw DatabaseError.
std::vector<DuePart> ReadDueParts(Connection& connection, std::int32_t method);
// In the place of those that the method has. `mode` as Fcol_Mod.
void StoreDueParts(Connection& connection, std::int32_t method, int mode, const std::vector<DuePart>& parts);
// Whether all parts are of one size.
bool AreEven(const std::vector<DuePart>& parts);

}  // namespace tpv::office
