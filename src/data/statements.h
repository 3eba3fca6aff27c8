// Pieces of SQL text and readings that several lists and screens share, so that
// a ticket's reference, amount and debt are the same everywhere.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tpv {

class Connection;

// Series, "/" and number; the number alone when the series is empty.
inline constexpr std::string_view kTicketReference =
    "((case when len(Cav_Serie)>0 then Cav_Serie + '/' else '' end) "
    "+ cast(Cav_Numero as varchar))";

// The same of an invoice.
inline constexpr std::string_view kInvoiceReference =
    "((case when len(Fav_Serie)>0 then Fav_Serie + '/' else '' end) "
    "+ cast(Fav_Numero as varchar))";

// Amount of a ticket with tax, over its lines joined to their tax rates.
inline constexpr std::string_view kAmountWithTax =
    "ROUND(cast(sum(lav_Importe + (lav_Importe /100 * Tiva_iva)) as money),2)";

// What journal entries have paid of a ticket.
inline constexpr std::string_view kAmountCollected =
    "ISNULL((SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id),0)";

// The select over tickets not wholly collected. Columns, in this order: Cav_Id,
// [Cav_NFiscal], [Ticket, Cav_Fecha, Agente], total, Cobrado, Pendiente (euros).
struct PendingTickets {
  bool with_name = false;    // Cav_NFiscal
  bool with_ticket = true;   // Ticket, Cav_Fecha, Agente
  std::string filter;        // " AND Cav_IdCli = 5", made with the helpers of sql_text.h
  std::string_view order;    // "ORDER BY Cav_Fecha", or nothing

  std::string Select() const;
};

// "between '…' AND '…' " over whole days, both inclusive. The arguments are date
// fields' texts; what is no date throws std::invalid_argument.
std::string BetweenDays(std::string_view from, std::string_view to);

// The select over the lines of all tickets of those days (made by BetweenDays).
// Columns: Lav_Importe (euros without tax), Tiva_Iva (percent).
std::string SoldLines(const std::string& days);

// The agents' names by Age_ID.
std::map<std::int32_t, std::string> AgentNames(Connection& connection);

// " AND Cav_IdCli = " and the id.
std::string OfCustomer(std::int32_t customer_id);

// Euros; all zero for a sale without lines.
struct SaleTotals {
  double base = 0;
  double total = 0;
  double tax() const { return total - base; }
};
SaleTotals ReadSaleTotals(Connection& connection, std::int32_t sale_id);

}  // namespace tpv
