// That a period's invoice takes in what the operator has seen in the list, and
// nothing that is still being keyed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tpv {

class Connection;
namespace ui {
struct Grid;
}

// What tells a list of tickets from another.
struct SeenTickets {
  std::optional<std::uint64_t> mark;  // the store's, before the list was read
  std::int32_t newest_line = 0;       // and its newest then
  double count = 0;
  double ids = 0;     // their sum
  double amount = 0;  // euros, with tax
};

// What is to be noted before a list is read.
SeenTickets AboutToSee(Connection& connection);
// Adds the tickets of the list, which has the columns Cav_Id and total.
void See(SeenTickets& seen, const ui::Grid& list);

// Throws InvoiceRefused when a ticket or line of a condition on Cav (" WHERE …") has come,
// gone or changed since the list was read, or when one of them is a sale in progress.
// Inside the invoice's transaction.
void RequireAsSeen(Connection& connection, const std::string& tickets, const SeenTickets& seen);

}  // namespace tpv
