#include "bench/records.h"

#include <algorithm>
#include <vector>

#include "fiscal/issuing.h"
#include "host/machine.h"

namespace tpv::bench {

void RecordAllTickets(Connection& connection) {
  constexpr std::size_t kTogether = 50000;
  connection.Execute("UPDATE Parametros SET Par_Fiscal = 1, Par_FisTicket = 0");
  const auto digest = MakeDigest();
  const auto desk = fiscal::DeskOf(connection, digest.get());
  std::vector<std::int32_t> tickets;
  const auto rows = connection.Execute("SELECT Cav_Id FROM Cav WHERE Cav_Ticket = 1 AND Cav_Situa = 1 ORDER BY Cav_Id");
  for (; !rows->Eof(); rows->MoveNext()) tickets.push_back(rows->Field(0).ToInt32());
  for (std::size_t next = 0; next < tickets.size();) {
    Transaction transaction(connection);
    const std::size_t end = std::min(next + kTogether, tickets.size());
    for (; next < end; ++next) fiscal::RecordTicket(desk, tickets[next]);
    transaction.Commit();
  }
  connection.Execute("UPDATE Parametros SET Par_Fiscal = 0");
}

}  // namespace tpv::bench
