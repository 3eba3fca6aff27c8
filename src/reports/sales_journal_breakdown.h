// What the sales journal shows on request besides its lists: the lines under
// each ticket, and totals of the period by till and by seller.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/ui/controls.h"

namespace tpv::journal {

// Puts each ticket's lines (as LinesOfTickets reads them) under its row: units
// and description as "Cliente", the amount as "Venta", everything else null.
void WeaveLines(ui::Grid& tickets, Recordset& lines);

// The columns of the journal's two lists that say whose a row is, and how to name
// that till or seller.
struct Grouping {
  std::string_view caption;
  std::string_view ticket_field;
  std::string_view collection_field;
  std::function<std::string(std::int32_t code)> name;
};

// One row a till or seller, in order of code: name, number of sales, sales, cash,
// card, discounts (euros), summed over both lists as shown.
void FillTotals(ui::Grid& totals, const ui::Grid& tickets, const ui::Grid& collections,
                const Grouping& grouping);

}  // namespace tpv::journal
