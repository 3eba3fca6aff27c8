// That a period's invoice takes in what the operator has seen in the list, and
// nothing that is still being keyed.
#pragma once

#include <string>

namespace tpv {

class Connection;

// Changes with every ticket or line that comes, goes or changes among the tickets
// of a condition on Cav: " WHERE …".
std::string MarkOfTickets(Connection& connection, const std::string& tickets);

// Throws InvoiceRefused when the tickets no longer bear the mark, or when one of
// them is a sale in progress. Inside the invoice's transaction.
void RequireAsSeen(Connection& connection, const std::string& tickets, const std::string& mark);

}  // namespace tpv
