#include "cash/movements_screen.h"

#include <algorithm>
#include <numeric>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/statements.h"
#include "platform/database.h"
#include "screen/lookups.h"

namespace tpv {

void FrmTpvMovCaja::OnLoad() {
  Screen::OnLoad();
  Text1[20].text = Parameter("Par_NumCaja").TextOr("");
  ShowSums();
}

void FrmTpvMovCaja::OnFirstActivate() {
  if (!bCompleto) {
    Option1_1.Check();
    ShowKind();
    Option1_0.enabled = Option1_1.enabled = frmCobros.enabled = false;
  }
  SetFocus(Text1[0]);
}

void FrmTpvMovCaja::OnF1(std::string_view tag) {
  pending_message = "e";
  if (tag == "Agentes") LookUpAgent(context(), toolkit(), 0, Text1[0], Text1[1]);
  if (tag == "Clientes") msBuscarClientes(-1, 0);
}

void FrmTpvMovCaja::LeaveAgent() {
  if (Text1[0].text.empty()) return Text1[1].text.clear();
  LookUpAgent(context(), toolkit(), Int32OrZero(Text1[0].text), Text1[0], Text1[1]);
}

bool FrmTpvMovCaja::msBuscarClientes(std::int32_t code, std::int32_t id) {
  const auto customer = FindCustomer(context(), toolkit(), code, id);
  if (!customer) return false;
  customer_id_ = customer->Id();
  customer_code_ = customer->Code();
  Text1[2].text = std::to_string(customer_code_);
  Text1[5].text = customer->Name();
  ListTickets();
  return true;
}

void FrmTpvMovCaja::ForgetCustomer() {
  customer_id_ = customer_code_ = 0;
  Text1[5].text.clear();
  ListTickets();
}

void FrmTpvMovCaja::LeaveCustomer() {
  const std::string& text = Text1[2].text;
  if (text.empty()) return ForgetCustomer();
  const auto code = ParseInt32(text);
  if (customer_id_ != 0 && code == customer_code_) return;
  if (msBuscarClientes(code.value_or(-2), 0)) return;
  ForgetCustomer();
  Refuse("Codigo de cliente no existe", &Text1[2]);
}

void FrmTpvMovCaja::LeaveAmount(int index) {
  if (!Text1[index].text.empty()) Text1[index].text = toolkit().FormatearImporte(Text1[index].text);
  if (index == 11) ShowSums();
}

// The statement says no order: the oldest ticket comes first, then the lower id.
std::vector<OpenTicket> FrmTpvMovCaja::ReadTickets(std::vector<ui::ListItem>& items) const {
  struct Row {
    DateTime date;
    OpenTicket ticket;
    ui::ListItem item;
  };
  std::vector<Row> found;
  PendingTickets pending;
  pending.filter = OfCustomer(customer_id_);
  const auto tickets = Database().Execute(pending.Select());
  for (; !tickets->Eof(); tickets->MoveNext()) {
    if (tickets->Field("Cav_Id").ToInt32() == sale_in_progress) continue;
    const Variant date = tickets->Field("Cav_Fecha");
    const OpenTicket ticket{tickets->Field("Cav_Id").ToInt32(), tickets->Field("Ticket").TextOr(""),
                            RoundHalfAway(tickets->Field("Pendiente").NumberOr(0), 2)};
    constexpr const char* kEuros = "#,###,##0.00";
    ui::ListItem item{{ticket.reference, Format(date, "dd/mm/yyyy HH:MM"),
                       tickets->Field("Agente").TextOr(""),
                       FormatNumber(tickets->Field("total").NumberOr(0), kEuros),
                       FormatNumber(ticket.pending, kEuros)},
                      false, ticket.id};
    found.push_back({date.IsNull() ? DateTime{} : date.ToDate(), ticket, std::move(item)});
  }
  std::sort(found.begin(), found.end(), [](const Row& left, const Row& right) {
    return std::tie(left.date, left.ticket.id) < std::tie(right.date, right.ticket.id);
  });
  std::vector<OpenTicket> ordered;
  for (Row& row : found) {
    ordered.push_back(std::move(row.ticket));
    items.push_back(std::move(row.item));
  }
  return ordered;
}

void FrmTpvMovCaja::ListTickets() {
  ListView1.items.clear();
  ListView1.current_row = -1;
  tickets_.clear();
  if (customer_id_ != 0) tickets_ = ReadTickets(ListView1.items);
  const double debt = std::accumulate(
      tickets_.begin(), tickets_.end(), 0.0,
      [](double sum, const OpenTicket& ticket) { return sum + ticket.pending; });
  Text1[15].text = customer_id_ == 0 ? std::string() : FormatNumber(debt, "##,##0.00");
  ShowSums();
}

// The tickets that the payment touches: those that the amount reaches from the
// oldest on, or those marked by hand.
std::vector<Share> FrmTpvMovCaja::Shares() const {
  if (Check2.checked) return ShareOut(tickets_, Number(Text1[11]));
  std::vector<Share> shares;
  for (std::size_t i = 0; i < tickets_.size(); ++i) {
    if (ListView1.items[i].checked) shares.push_back({i, tickets_[i].pending, true});
  }
  return shares;
}

double FrmTpvMovCaja::Selected() const {
  double sum = 0;
  for (std::size_t i = 0; i < tickets_.size(); ++i) {
    if (ListView1.items[i].checked) sum += tickets_[i].pending;
  }
  return RoundHalfAway(sum, 2);
}

double FrmTpvMovCaja::Change() const {
  return std::max(0.0, RoundHalfAway(Number(Text1[11]) - Selected(), 2));
}

void FrmTpvMovCaja::ShowSums() {
  if (Check2.checked) {
    for (ui::ListItem& item : ListView1.items) item.checked = false;
    for (const Share& share : Shares()) ListView1.items[share.ticket].checked = true;
  }
  Text1[7].text = FormatNumber(Selected(), "#,##0.00");
  Text1[4].text = FormatNumber(Change(), "#,##0.00");
}

}  // namespace tpv
