#include "cash/closing_screen.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "cash/closures_journal.h"
#include "context/kept_sale.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "screen/lookups.h"

namespace tpv {

void FrmTpvCierreCaja::OnLoad() {
  Screen::OnLoad();
  Text1[5].text = ToDayFirst(context().ports.clock.Now());
  Text1[11].tag = "Vendedor";
}

void FrmTpvCierreCaja::OnF1(std::string_view tag) {
  if (tag != "Vendedor") return SendTab();
  pending_message = "e";
  LookUpAgent(context(), toolkit(), 0, Text1[11], Text1[12]);
}

void FrmTpvCierreCaja::msValoresiniciales() {
  for (auto& [index, box] : Text1) {
    if (index != 5 && index != 11 && index != 12) box->text.clear();
  }
  DbgDiario.Clear();
  dbgCajas.Clear();
  Frame1.caption = "Cierre caja:";
  opening_.reset();
  count_.reset();
  lblArqueo.caption.clear();
}

void FrmTpvCierreCaja::LeaveAgent() {
  if (Text1[11].text.empty()) return Text1[12].text.clear();
  LookUpAgent(context(), toolkit(), Int32OrZero(Text1[11].text), Text1[11], Text1[12]);
}

bool FrmTpvCierreCaja::RequireAgent() {
  if (!Text1[11].text.empty() && context().IdAgente != 0) return true;
  Refuse("No ha indicado el vendedor", &Text1[11]);
  return false;
}

void FrmTpvCierreCaja::StartProcess() {
  if (!RequireDate(Text1[5], "No ha indicado desde que fecha quiere el informe")) return;
  if (!RequireAgent()) return;
  Frame4.caption = "Cajas abiertas";
  Frame1.visible = true;
  ListTills();
}

void FrmTpvCierreCaja::ListTills() {
  bool any_entry = false;
  tills_.clear();
  ListView1.items.clear();
  ListView1.current_row = -1;
  tills_ = OpenTills(context(), any_entry);
  for (const OpenTill& open : tills_) {
    ListView1.items.push_back(
        {{std::to_string(open.till), FormatDate(open.last_event, "dd/mm/yyyy hh:mm")}, false, open.till});
  }
  if (!any_entry || !tills_.empty()) return;
  Refuse("No se encuentran actualmente cajas abiertas", nullptr, ui::Icon::Information);
  Close();
}

void FrmTpvCierreCaja::ChooseTill(int row) {
  msValoresiniciales();
  context().Caja = Variant(tills_.at(row).till).ToInt16();
  Frame1.caption = "Cierre caja: " + std::to_string(context().Caja);
  ShowPeriod();
  if (!opening_) return Refuse("No se ha encontrado la apertura de esta caja", nullptr);
  SetFocus(Text1[4]);
}

void FrmTpvCierreCaja::ShowEuros(int index, double euros) {
  Text1[index].text = FormatNumber(euros, "0.00");
}

// A till whose figures could not all be read is not chosen.
void FrmTpvCierreCaja::ShowPeriod() {
  try {
    opening_ = LastOpening(context(), context().Caja);
    if (opening_) ShowFigures(ClosingPeriod(context(), context().Caja, opening_->when));
  } catch (const std::exception&) {
    ForgetTill();
    throw;
  }
}

void FrmTpvCierreCaja::ForgetTill() {
  msValoresiniciales();
  ListView1.current_row = -1;
}

void FrmTpvCierreCaja::ShowFigures(const ClosingPeriod& period) {
  Text1[9].text = Variant(opening_->when).ToText();
  Text1[10].text = opening_->agent;
  Text1[3].text = FormatNumber(opening_->initial, "#,###,##0.00");
  mark_ = period.Mark();
  const PeriodTotals totals = period.Totals();
  ShowEuros(6, totals.cash);
  ShowEuros(7, totals.card);
  ShowEuros(1, totals.paid);
  ShowEuros(2, Number(Text1[3]) + Number(Text1[6]) - Number(Text1[1]));
  using enum ui::Align;
  DbgDiario.Bind(*period.Collections(), {{"Fecha", "DD/MM/YYYY HH:MM", 0, Left, false, false},
                                         {"Vendedor", "", 3500, Left, false, false},
                                         {"Ticket", "", 1200, Left, false, false},
                                         {"Importe", "#,##0.00", 1200, Right, false, false, true},
                                         {"Metalico", "#,##0.00", 1200, Right, false, false, true},
                                         {"Tarjeta", "#,##0.00", 1000, Right, false, false, true},
                                         {"Id", "", 0, Right, true, false}});
}

// A till that owes more than it holds can still be closed: nothing is taken out.
void FrmTpvCierreCaja::LeaveWithdrawal() {
  Text1[8].text.clear();
  const auto withdrawn = ParseNumber(Text1[4].text);
  if (!withdrawn) return;
  const double balance = Number(Text1[2]);
  if (*withdrawn > 0 && balance < *withdrawn) {
    return Refuse("No puede retirar un importe superior al saldo", &Text1[4]);
  }
  ShowEuros(8, toolkit().Redondear(balance - *withdrawn, 2));
}

void FrmTpvCierreCaja::BackToTills() {
  msValoresiniciales();
  ListTills();
}

void FrmTpvCierreCaja::ShowJournal() {
  const KeptSale kept(context());  // the journal looks agents up too
  FrmTpvDiarioCierres journal(context());
  context().ports.ui.ShowModal(journal);
}

}  // namespace tpv
