#include "debt/open_tickets.h"

#include <algorithm>
#include <tuple>

#include "base/rounding.h"
#include "data/sales_in_progress.h"
#include "data/statements.h"
#include "platform/database.h"

namespace tpv {

namespace {

DateTime When(const ListedTicket& listed) {
  return listed.date.IsNull() ? DateTime{} : listed.date.ToDate();
}

bool Older(const ListedTicket& left, const ListedTicket& right) {
  return std::tuple(When(left), left.ticket.id) < std::tuple(When(right), right.ticket.id);
}

}  // namespace

// The statement says no order.
std::vector<ListedTicket> ReadOpenTickets(Connection& connection, std::int32_t customer_id) {
  PendingTickets pending;
  pending.filter = OfCustomer(customer_id);
  const std::set<std::int32_t> being_keyed = IdsOfSalesInProgress(connection);
  std::vector<ListedTicket> found;
  const auto rows = connection.Execute(pending.Select());
  for (; !rows->Eof(); rows->MoveNext()) {
    if (being_keyed.contains(rows->Field("Cav_Id").ToInt32())) continue;
    found.push_back({{rows->Field("Cav_Id").ToInt32(), rows->Field("Ticket").TextOr(""),
                      RoundHalfAway(rows->Field("Pendiente").NumberOr(0), 2)},
                     rows->Field("Cav_Fecha"), rows->Field("Agente").TextOr(""),
                     rows->Field("total").NumberOr(0)});
  }
  std::sort(found.begin(), found.end(), Older);
  return found;
}

}  // namespace tpv
