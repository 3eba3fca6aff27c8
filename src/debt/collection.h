// How a later payment is shared out among a customer's open tickets: the rules,
// without any form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tpv {

// Amounts in euros, to the cent.
struct OpenTicket {
  std::int32_t id = 0;      // Cav_Id
  std::string reference;
  double pending = 0;
};

// What a payment gives to one ticket.
struct Share {
  std::size_t ticket = 0;  // index into the list
  double amount = 0;
  bool settled = false;    // nothing is left to pay
};

// Pays the tickets in list order while the amount lasts; the last one reached
// may be paid in part.
std::vector<Share> ShareOut(const std::vector<OpenTicket>& tickets, double amount);

// Observation of the entry, 100 characters at most. Several `references` are
// joined; none means that the oldest tickets are paid.
std::string CollectionNote(std::int32_t customer_code, const std::string& customer,
                           const std::vector<std::string>& references);

}  // namespace tpv
