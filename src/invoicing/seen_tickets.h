// That a period's invoice takes in what the operator has seen in the list, and
// nothing that is still being keyed.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

class Connection;
namespace ui {
struct Grid;
}

// What tells a list of tickets from another.
struct SeenTickets {
  std::int32_t newest_line = 0;  // of the store, before the list was read
  double count = 0;
  double ids = 0;     // their sum
  double amount = 0;  // euros, with tax
};

std::int32_t NewestLine(Connection& connection);
// Of a list with the columns Cav_Id and total, read since the store had that newest line.
SeenTickets SeenIn(const ui::Grid& list, std::int32_t newest_line);

// Throws InvoiceRefused when a ticket or line of a condition on Cav (" WHERE …") has come,
// gone or changed since the list was read, or when one of them is a sale in progress.
// Inside the invoice's transaction.
void RequireAsSeen(Connection& connection, const std::string& tickets, const SeenTickets& seen);

}  // namespace tpv
