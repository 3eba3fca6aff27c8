#include "cash/movements_screen.h"

#include <algorithm>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
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
  if (tag != "Agentes" && tag != "Clientes") return ShowManual();
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
  ForgetCustomer();
  if (msBuscarClientes(code.value_or(-2), 0)) return;
  Refuse("Codigo de cliente no existe", &Text1[2]);
}

void FrmTpvMovCaja::LeaveAmount(int index) {
  if (!Text1[index].text.empty()) Text1[index].text = toolkit().FormatearImporte(Text1[index].text);
  if (index == 11) ShowSums();
}

ui::ListItem FrmTpvMovCaja::ItemOf(const ListedTicket& listed) {
  constexpr const char* kEuros = "#,###,##0.00";
  const OpenTicket& ticket = listed.ticket;
  return {{ticket.reference, Format(listed.date, "dd/mm/yyyy HH:MM"), listed.agent,
           FormatNumber(listed.total, kEuros), FormatNumber(ticket.pending, kEuros)},
          false, ticket.id};
}

void FrmTpvMovCaja::ListTickets() {
  ListView1.items.clear();
  ListView1.current_row = -1;
  tickets_.clear();
  Text1[15].text.clear();
  double debt = 0;
  if (customer_id_ != 0) {
    for (const ListedTicket& listed : ReadOpenTickets(Database(), customer_id_)) {
      ListView1.items.push_back(ItemOf(listed));
      tickets_.push_back(listed.ticket);
      debt += listed.ticket.pending;
    }
  }
  if (customer_id_ != 0) Text1[15].text = FormatNumber(debt, "##,##0.00");
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
    std::vector<bool> reached(tickets_.size());
    for (const Share& share : Shares()) reached[share.ticket] = true;
    for (std::size_t i = 0; i < reached.size(); ++i) ListView1.Mark(i, reached[i]);
  }
  Text1[7].text = FormatNumber(Selected(), "#,##0.00");
  Text1[4].text = FormatNumber(Change(), "#,##0.00");
}

}  // namespace tpv
