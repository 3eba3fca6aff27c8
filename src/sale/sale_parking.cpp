// Sales that are put aside and gone on with: what a till left unfinished is offered
// when its screen opens, and a customer who forgot his purse lets the next one pay.
#include "base/text.h"
#include "context/kept_sale.h"
#include "data/sales_in_progress.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "sale/left_sales_screen.h"
#include "sale/returns_screen.h"
#include "sale/sale_screen.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Icon;

// Once a till, so that leaving it for later is heeded.
void FrmTpv::OfferLeftSales() {
  const auto till = TillNumber(Text1[6].text);
  if (!till || till == offered_till_ || sale_in_progress_ || !cmdNueva.enabled) return;
  offered_till_ = till;
  try {
    CountParked();
    if (!SalesInProgress(Database(), *till).empty()) ChooseLeftSale(*till);
  } catch (const DatabaseError& error) {  // the screen is open for all else
    Refuse("No se han podido recuperar las ventas sin terminar. " + std::string(kLineBreak) + error.what(), nullptr,
           Icon::Critical);
  }
}

// For the operator's eye alone.
void FrmTpv::CountParked() {
  parked_ = SalesInProgress(Database(), SaleInProgress::kNoTill).size();
}

void FrmTpv::OnF5() {
  const ui::Button& button = sale_in_progress_ ? cmdAparcar : cmdRecuperar;
  if (button.IsEnabled() && LeaveField()) button.click();
}

void FrmTpv::TakeUp() {
  const auto till = TillNumber(Text1[6].text);
  if (!till) return void(Warn("No ha informado del numero de caja", &Text1[6]));
  ChooseLeftSale(*till);
}

void FrmTpv::ChooseLeftSale(std::int16_t till) {
  FrmVentasAparcadas choice(context(), till);
  context().ports.ui.Load(choice);
  if (choice.Empty()) return Refuse("No hay ventas aparcadas", nullptr, Icon::Information);
  context().ports.ui.ShowModal(choice);
  CountParked();
  if (!choice.TakenUp()) return;
  choice.TakenUp()->total < 0 ? GoOnReturning() : GoOn();
}

void FrmTpv::GoOn() {
  head_ = Head{Text1[0].text, Text1[1].text, context().IdAgente, Check1.checked, Text1[4].text};
  ShowHeadOfSale();
  ShowSaleInProgress();
  ShowLinesAndTotals();
}

// Goods brought back are paid out later, as their own screen leaves them.
void FrmTpv::GoOnReturning() {
  const std::int32_t sale = context().IdAlbaran;
  context().IdAlbaran = -1;
  const KeptSale kept(context());
  FrmTpvDevoluciones returns(context());
  context().ports.ui.Load(returns);
  returns.Text1[6].text = Text1[6].text;
  returns.GoOn(sale);
  context().ports.ui.ShowModal(returns);
}

// The seller and date of a sale that was gone on with are not those of the next one.
void FrmTpv::ShowOwnHead() {
  if (!head_) return;
  Text1[0].text = head_->agent;
  Text1[1].text = head_->agent_name;
  context().IdAgente = head_->agent_id;
  Check1.checked = head_->system_date;
  Text1[4].text = head_->date;
  head_.reset();
}

void FrmTpv::Park() {
  if (!SettleWaitingLine()) return;
  if (dbgVenta.rows.empty()) {
    return Refuse("La venta no tiene líneas", &Text1[19], Icon::Exclamation);
  }
  try {
    ParkSale(context());
  } catch (const SaleTaken& taken) {
    return Refuse(taken.what(), nullptr, Icon::Critical);
  }
  EmptyAfterSale();
  CountParked();
}

// A ticket that is still being keyed somewhere is none to hand out.
bool FrmTpv::IsUnfinished(std::int32_t sale_id) {
  const auto sale = SaleInProgressOf(Database(), sale_id);
  if (!sale) return false;
  Refuse("El último ticket de la caja está sin terminar (" + Described(*sale) + "). Recupérelo y termínelo antes", nullptr,
         Icon::Exclamation);
  return true;
}

}  // namespace tpv
