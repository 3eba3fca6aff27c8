#include "reports/sales_journal_breakdown.h"

#include <map>
#include <vector>

#include "base/mask.h"
#include "platform/database.h"

namespace tpv::journal {

namespace {

using Row = std::vector<Variant>;

struct Sums {
  std::int32_t sales = 0;
  double amount = 0;
  double cash = 0;
  double card = 0;
  double discount = 0;
};

std::map<std::int32_t, std::vector<Row>> RowsByTicket(const ui::Grid& tickets, Recordset& lines) {
  std::map<std::int32_t, std::vector<Row>> by_ticket;
  const int text = tickets.Column("Cliente");
  const int amount = tickets.Column("Venta");
  for (; !lines.Eof(); lines.MoveNext()) {
    Row& row = by_ticket[lines.Field("Lav_IdCav").ToInt32()].emplace_back(tickets.fields.size());
    row[text] = Variant("    " + FormatNumber(lines.Field("Lav_Uni").NumberOr(0), "#,##0.00") + "  " +
                        lines.Field("Lav_Des").TextOr(""));
    row[amount] = lines.Field("Importe");
  }
  return by_ticket;
}

// Calls `add` with each row's sums and a reader of its numbers.
template <typename Add>
void Collect(std::map<std::int32_t, Sums>& by_code, const ui::Grid& grid, std::string_view code_field,
             Add add) {
  const int code = grid.Column(code_field);
  for (const Row& row : grid.rows) {
    add(by_code[row[code].IntOr(0)],
        [&](std::string_view field) { return row[grid.Column(field)].NumberOr(0); });
  }
}

}  // namespace

void WeaveLines(ui::Grid& tickets, Recordset& lines) {
  auto by_ticket = RowsByTicket(tickets, lines);
  std::vector<Row> rows = tickets.rows.Take();
  std::vector<Row> woven;
  for (Row& ticket : rows) {
    const std::int32_t id = ticket.front().IntOr(0);
    woven.push_back(std::move(ticket));
    for (Row& line : by_ticket[id]) woven.push_back(std::move(line));
  }
  tickets.rows = std::move(woven);
}

void FillTotals(ui::Grid& totals, const ui::Grid& tickets, const ui::Grid& collections,
                const Grouping& grouping) {
  std::map<std::int32_t, Sums> by_code;
  Collect(by_code, tickets, grouping.ticket_field, [](Sums& sums, const auto& number) {
    ++sums.sales;
    sums.amount += number("Venta");
  });
  Collect(by_code, collections, grouping.collection_field, [](Sums& sums, const auto& number) {
    sums.cash += number("Metalico");
    sums.card += number("Tarjeta");
    sums.discount += number("Descuento");
  });
  using enum ui::Align;
  totals.Clear();
  totals.fields = {"Nombre", "Numero", "Ventas", "Metalico", "Tarjeta", "Descuento"};
  totals.layout = {{std::string(grouping.caption), "", 2400, Left, false, false},
                   {"Numero", "#,##0", 900, Right, false, false, true}};
  for (const char* amount : {"Ventas", "Metalico", "Tarjeta", "Descuento"}) {
    totals.layout.push_back({amount, "#,##0.00", 1200, Right, false, false, true});
  }
  for (const auto& [code, sums] : by_code) {
    totals.rows.push_back({Variant(grouping.name(code)), Variant(sums.sales), Variant(sums.amount),
                           Variant(sums.cash), Variant(sums.card), Variant(sums.discount)});
  }
}

}  // namespace tpv::journal
