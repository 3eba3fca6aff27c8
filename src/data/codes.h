// The code values of the shop's tables, as every screen reads and writes them.
#pragma once

namespace tpv {

// DiaCaj_Tipo: what happened at the till.
enum class JournalEvent : int {
  Opening = 0,
  TicketCollection = 1,   // at checkout, one ticket
  PendingCollection = 2,  // later, one or several tickets
  PaymentOut = 3,
  Closure = 9,
};

// DiaCaj_Modo: means of payment. Openings, closures and payments out carry Cash.
enum class PaymentMode : int { Cash = 1, Card = 2, CashAndCard = 3 };

// Cav_Situa: invoicing state of a ticket; any other value is "No facturable".
enum class InvoicingState : int { Pending = 1, Invoiced = 2 };

}  // namespace tpv
