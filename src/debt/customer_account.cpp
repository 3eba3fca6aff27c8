#include "debt/customer_account.h"

#include <algorithm>

#include "base/rounding.h"
#include "context/context.h"
#include "data/statements.h"
#include "platform/database.h"

namespace tpv {

namespace {

using Entries = std::vector<AccountEntry>;

DateTime DateOf(const Variant& date) { return date.IsNull() ? DateTime{} : date.ToDate(); }

// A ticket that counts as paid though less was collected: the rest was let go, at a discount.
void AddTickets(Connection& connection, const std::string& of_customer, Entries& entries) {
  const auto tickets = connection.Execute(
      "SELECT Cav_Fecha, " + std::string(kTicketReference) + " AS Ticket, " +
      std::string(kAmountWithTax) + " AS Total, Cav_Cobrado, " + std::string(kAmountCollected) +
      " AS Cobrado FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Ticket = 1" +
      of_customer +
      " GROUP BY Cav_Id,Cav_Serie,Cav_Numero,Cav_Fecha,Cav_Cobrado ORDER BY Cav_Fecha");
  for (; !tickets->Eof(); tickets->MoveNext()) {
    const DateTime when = DateOf(tickets->Field("Cav_Fecha"));
    const std::string ticket = tickets->Field("Ticket").TextOr("");
    const double total = tickets->Field("Total").NumberOr(0);
    entries.push_back({when, "Ticket " + ticket, total, 0});
    const double rest = RoundHalfAway(total - tickets->Field("Cobrado").NumberOr(0), 2);
    if (tickets->Field("Cav_Cobrado").ToBool() && rest != 0) {
      entries.push_back({when, "Diferencia aceptada en " + ticket, 0, rest});
    }
  }
}

void AddPayments(Connection& connection, const std::string& of_customer, Entries& entries) {
  const auto payments =
      connection.Execute("SELECT DiaCaj_Fecha, " + std::string(kTicketReference) +
                         " AS Ticket, Tco_Importe FROM Tco INNER JOIN Cav ON Cav_Id = Tco_IdCav "
                         "LEFT JOIN DiaCaj ON DiaCaj_Id = Tco_IdDiaCaj WHERE Cav_Ticket = 1" +
                         of_customer + " ORDER BY DiaCaj_Fecha");
  for (; !payments->Eof(); payments->MoveNext()) {
    entries.push_back({DateOf(payments->Field("DiaCaj_Fecha")),
                       "Cobro de " + payments->Field("Ticket").TextOr(""), 0,
                       payments->Field("Tco_Importe").NumberOr(0)});
  }
}

}  // namespace

CustomerAccount ReadAccount(Context& context, std::int32_t customer_id,
                            const std::optional<DateTime>& from,
                            const std::optional<DateTime>& to) {
  Connection& connection = context.Database();
  const Snapshot snapshot(connection);
  const std::string of_customer = OfCustomer(customer_id);
  Entries all;
  AddTickets(connection, of_customer, all);
  AddPayments(connection, of_customer, all);
  std::stable_sort(all.begin(), all.end(), [](const AccountEntry& one, const AccountEntry& other) {
    return one.when < other.when;
  });
  CustomerAccount account;
  double balance = 0;
  for (AccountEntry& entry : all) {
    if (to && StartOfDay(entry.when) > *to) break;
    balance = RoundHalfAway(balance + entry.sold - entry.paid, 2);
    entry.balance = balance;
    if (from && entry.when < *from)
      account.before = balance;
    else
      account.entries.push_back(std::move(entry));
  }
  return account;
}

}  // namespace tpv
