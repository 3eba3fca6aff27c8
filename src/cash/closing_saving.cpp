// Checking and storing a closure, and telling when it failed.
#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "cash/closing_screen.h"
#include "cash/closure.h"
#include "cash/mail_queue.h"
#include "cash/ticket_dialog.h"
#include "data/till_state.h"
#include "platform/settings.h"

namespace tpv {

using ui::Icon;

bool FrmTpvCierreCaja::CheckDate() {
  if (Check2.checked) return true;
  if (!IsDate(Text1[5].text)) Text1[5].text.clear();
  return RequireDate(Text1[5], "No ha informado de la fecha del cierre");
}

bool FrmTpvCierreCaja::CheckWithdrawal() {
  const auto withdrawn = ParseNumber(Text1[4].text);
  if (withdrawn && *withdrawn >= 0) return true;
  Text1[4].text.clear();
  Refuse("No ha informado el importe retirado", &Text1[4], Icon::Exclamation, "Atención");
  return false;
}

bool FrmTpvCierreCaja::CheckTill() {
  if (!opening_) {
    Refuse("No ha elegido la caja que quiere cerrar", &ListView1, Icon::Exclamation);
    return false;
  }
  return RequireAgent();
}

bool FrmTpvCierreCaja::CheckDay() {
  try {
    RequireDay(context(), Entered());
    return true;
  } catch (const TillRefusal& refusal) {
    TellRefusal(refusal);
    return false;
  }
}

void FrmTpvCierreCaja::Save() {
  if (!CheckDate() || !CheckWithdrawal() || !CheckTill() || !CheckDay()) return;
  if (!Confirm("Confirma la grabación del proceso", Icon::Question)) return;
  const auto closure_id = Store();
  if (!closure_id) return;
  if (Check1.checked) PrintTicket(*closure_id);
  BackToTills();
}

Closure FrmTpvCierreCaja::Entered() const {
  Closure closure;
  closure.server_date = Check2.checked;
  closure.date = Text1[5].text;
  closure.initial = Number(Text1[3]);
  closure.cash = Number(Text1[6]);
  closure.card = Number(Text1[7]);
  closure.paid = Number(Text1[1]);
  closure.withdrawn = Number(Text1[4]);
  const int id = DbgDiario.Column("Id");
  for (const auto& row : DbgDiario.rows) closure.collections.push_back(row.at(id).ToInt32());
  closure.mark = mark_;
  closure.count = count_;
  return closure;
}

// The window is painted before: nobody waits for it while the store is locked.
std::int32_t FrmTpvCierreCaja::StoreSayingSo() {
  const ui::WaitCursor waiting(*this);
  const Closure closure = Entered();
  lblProceso.caption = "Grabando el cierre de " +
                       FormatNumber(static_cast<double>(closure.collections.size()), "#,##0") +
                       " cobros";
  context().ports.ui.ProcessEvents();
  return StoreClosure(context(), ClosingPeriod(context(), context().Caja, opening_->when), closure);
}

std::optional<std::int32_t> FrmTpvCierreCaja::Store() {
  try {
    const std::int32_t closure_id = StoreSayingSo();
    lblProceso.caption.clear();
    if (context().till_closed) context().till_closed();
    return closure_id;
  } catch (const TillRefusal& refusal) {
    TellRefusal(refusal);
  } catch (const PeriodChanged& changed) {
    lblProceso.caption.clear();
    Refuse(changed.what(), &Text1[4], Icon::Exclamation);
    ShowPeriod();
    ShowCount();
    LeaveWithdrawal();
  } catch (const ClosureFailed& failure) {
    TellFailure(failure);
  }
  return std::nullopt;
}

// Another post closed this till meanwhile, or an answer to our own closure got lost.
void FrmTpvCierreCaja::TellRefusal(const TillRefusal& refusal) {
  lblProceso.caption.clear();
  const bool date = refusal.about() == TillRefusal::About::Date;
  Refuse(refusal.what(), date ? &Text1[5] : nullptr, Icon::Exclamation);
  if (!date) BackToTills();
}

// Support hears of it where the shop has one; the operator always does.
void FrmTpvCierreCaja::TellFailure(const ClosureFailed& failure) {
  lblProceso.caption.clear();
  const std::string reason = failure.what();
  const std::string support = Trim(context().ports.settings.Read("TPV", "Mail", "Support"));
  if (!support.empty()) {
    SendMailNow(context(), support, "Detalle del error:" + std::string(kLineBreak) + reason,
                "Error en poceso de cierre de caja TPV");
  }
  Refuse("Error procesando cierre de caja" + std::string(kLineBreak) + reason, nullptr,
         Icon::Critical, "Proceso Cancelado");
  if (!failure.inserted) Close();
}

void FrmTpvCierreCaja::PrintTicket(std::int32_t closure_id) {
  FrmFactuTicket ticket(context());
  ticket.mode = FrmFactuTicket::Mode::ClosurePrint;
  ticket.closure_id = closure_id;
  context().ports.ui.ShowModal(ticket);
}

}  // namespace tpv
