// The state of the till as the operator sees it at a glance.
#include "base/mask.h"
#include "context/context.h"
#include "sale/returns_screen.h"
#include "sale/sale_screen.h"
#include "screen/waiting_items.h"

namespace tpv {

namespace {

using ui::StatusItem;

StatusItem Known(const char* label, const std::string& text, const char* missing) {
  if (text.empty()) return {label, missing, StatusItem::Tone::Missing};
  return {label, text, StatusItem::Tone::Neutral};
}

}  // namespace

std::vector<StatusItem> SaleEntry::Status() const {
  using Tone = StatusItem::Tone;
  const std::string& till = Text1[6].text;
  const StatusItem state{"Caja", (till.empty() ? "sin número" : till) +
                                     std::string(till_open_ ? " · abierta" : " · cerrada"),
                         till_open_ ? Tone::Good : Tone::Missing};
  const StatusItem sale = sale_in_progress_ ? StatusItem{"Venta", "En curso", Tone::Good}
                                            : StatusItem{"Venta", "Ninguna", Tone::Neutral};
  std::vector<StatusItem> items = {state, Known("Vendedor", Text1[1].text, "sin indicar"),
                                   Known("Cliente", Text1[5].text, "sin indicar"), sale};
  AddWaiting(context().ports, items);
  return items;
}

// What the customer asks for once more is in sight until the next sale begins.
std::vector<StatusItem> FrmTpv::Status() const {
  using Tone = StatusItem::Tone;
  if (!finished_) {
    std::vector<StatusItem> items = SaleEntry::Status();
    if (parked_ > 0) items.push_back({"Aparcadas", std::to_string(parked_), Tone::Missing});
    return items;
  }
  const auto euros = [](double amount) { return FormatNumber(amount, "#,##0.00"); };
  const Payment& paid = finished_->payment;
  std::vector<StatusItem> items = {SaleEntry::Status().front(),
                                   {"Ticket", finished_->ticket, Tone::Neutral, true},
                                   {"Total", euros(paid.total), Tone::Neutral, true},
                                   {"Entregado", euros(paid.Paid()), Tone::Neutral, true},
                                   {"Cambio", euros(paid.change), Tone::Good, true}};
  if (!finished_->invoice.empty()) {
    items.insert(items.begin() + 2, {"Factura", finished_->invoice, Tone::Neutral, true});
  }
  AddWaiting(context().ports, items);
  return items;
}

std::vector<StatusItem> FrmTpvDevoluciones::Status() const {
  std::vector<StatusItem> items = SaleEntry::Status();
  items.insert(items.begin(), {"Ticket de", "DEVOLUCIÓN", StatusItem::Tone::Neutral, true});
  return items;
}

}  // namespace tpv
