#include "debt/customer_debt.h"

#include "context/context.h"
#include "data/statements.h"
#include "platform/database.h"

namespace tpv {

double CustomerDebt(Context& context, std::int32_t customer_id) {
  PendingTickets tickets;
  tickets.filter = OfCustomer(customer_id);
  tickets.order = "ORDER BY Cav_Fecha Desc";
  double debt = 0;
  const auto rows = context.Database().Execute(tickets.Select());
  for (; !rows->Eof(); rows->MoveNext()) debt += rows->Field("Pendiente").NumberOr(0);
  return debt;
}

}  // namespace tpv
