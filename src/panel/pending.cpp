#include "panel/pending.h"

#include <algorithm>

#include "data/statements.h"
#include "panel/euros.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

PendingByAge ReadPending(Connection& connection, const DateTime& today) {
  PendingByAge pending{};
  // A ticket at a time: nothing to be sorted into groups.
  const auto tickets = connection.Execute(
      "SELECT Cav_Fecha, (SELECT " + std::string(kAmountWithTax) + " FROM Lav "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Lav_IdCav = Cav_Id) - " +
      std::string(kAmountCollected) + " AS Pendiente FROM Cav WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0");
  for (; !tickets->Eof(); tickets->MoveNext()) {
    Pulse();
    const Variant date = tickets->Field(0);
    std::size_t age = kAges.size();  // a ticket without a date counts as the oldest
    if (!date.IsNull()) {
      const std::int64_t days = Days{StartOfDay(date.ToDate()), today}.Count() - 1;
      age = static_cast<std::size_t>(
          std::find_if(kAges.begin(), kAges.end(), [&](int most) { return days <= most; }) - kAges.begin());
    }
    pending[age] += ToCents(tickets->Field(1).NumberOr(0));
  }
  return pending;
}

}  // namespace tpv::panel
