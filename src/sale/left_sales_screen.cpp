#include "sale/left_sales_screen.h"

#include <algorithm>

#include "base/mask.h"
#include "data/till_state.h"
#include "platform/database.h"

namespace tpv {

using ui::Icon;

namespace {

ui::ListItem ItemOf(const LeftSale& left) {
  ui::ListItem item;
  item.cells = {left.sale.ticket,
                FormatDate(left.sale.since, "DD/MM/YYYY HH:MM"),
                left.sale.Parked() ? "Aparcada" : "A medias",
                left.till,
                left.agent,
                left.customer,
                FormatNumber(left.total, "#,##0.00")};
  item.tag = left.sale.sale;
  return item;
}

}  // namespace

FrmVentasAparcadas::FrmVentasAparcadas(Context& ctx, std::int16_t till)
    : Screen(ctx, "frmVentasAparcadas"), till_(till) {
  caption = "Ventas sin terminar";
  DeclareLayout();
  ListView1.selected = [this](int) { ShowChosen(); };
  cmdRecuperar.click = [this] { WithChosen([this](const LeftSale& left) { TakeUp(left); }); };
  cmdAparcar.click = [this] { WithChosen([this](const LeftSale& left) { Park(left); }); };
  cmdEliminar.click = [this] { WithChosen([this](const LeftSale& left) { GiveUp(left); }); };
  cmdSalir.click = [this] { Close(); };
}

void FrmVentasAparcadas::DeclareLayout() {
  using enum ui::Align;
  ListView1.layout = {{"Ticket", "", 1100, Left, false, false},
                      {"Desde", "", 1900, Left, false, false},
                      {"Estado", "", 1200, Left, false, false},
                      {"Caja", "", 700, Right, false, false},
                      {"Vendedor", "", 2500, Left, false, false},
                      {"Cliente", "", 3500, Left, false, false},
                      {"Importe", "", 1200, Right, false, false}};
  ListView1.stretch = true;
  cmdRecuperar.emphasis = ui::Emphasis::Strong;
  cmdEliminar.emphasis = ui::Emphasis::Warning;
  lblAviso.stretch = true;
  rows = {{&ListView1}, {&lblAviso}, {&cmdRecuperar, &cmdAparcar, &cmdEliminar, &cmdSalir}};
}

void FrmVentasAparcadas::OnLoad() {
  Screen::OnLoad();
  List();
}

void FrmVentasAparcadas::List() {
  {
    const Snapshot snapshot(Database());
    left_ = ReadLeftSales(Database(), till_);
  }
  ListView1.items.clear();
  for (const LeftSale& left : left_) ListView1.items.push_back(ItemOf(left));
  ListView1.current_row = left_.empty() ? -1 : 0;
  ShowChosen();
}

const LeftSale* FrmVentasAparcadas::Chosen() const {
  const int row = ListView1.current_row;
  return row < 0 || row >= static_cast<int>(left_.size()) ? nullptr : &left_[static_cast<std::size_t>(row)];
}

void FrmVentasAparcadas::ShowChosen() {
  const LeftSale* chosen = Chosen();
  const bool unfinished = chosen != nullptr && !chosen->sale.Parked();
  cmdRecuperar.enabled = cmdEliminar.enabled = chosen != nullptr;
  cmdAparcar.enabled = unfinished;
  lblAviso.caption = unfinished ? "La caja " + std::to_string(till_) +
                                      " dejó esta venta sin terminar. Si otro puesto con ese número de caja "
                                      "la está atendiendo ahora, no la recupere aquí: se le quitaría."
                                : "Una venta aparcada se puede recuperar en cualquier caja.";
}

// What another till did meanwhile is told, and the list shown as it is now.
template <typename Act>
void FrmVentasAparcadas::WithChosen(Act act) {
  const LeftSale* chosen = Chosen();
  if (chosen == nullptr) return;
  const LeftSale left = *chosen;
  try {
    act(left);
  } catch (const TillRefusal& refusal) {
    Refuse(refusal.what(), nullptr, Icon::Exclamation);
  } catch (const DatabaseError& error) {
    Refuse(error.what(), nullptr, Icon::Critical);
  }
  if (!taken_up_) List();
}

void FrmVentasAparcadas::TakeUp(const LeftSale& left) {
  TakeUpSale(context(), left.sale, till_);
  taken_up_ = left;
  Close();
}

void FrmVentasAparcadas::Park(const LeftSale& left) { ParkLeftSale(context(), left.sale); }

void FrmVentasAparcadas::GiveUp(const LeftSale& left) {
  const std::string question = "¿Desea eliminar la venta " + left.sale.ticket + " de " +
                               FormatNumber(left.total, "#,##0.00") + " €?";
  if (Confirm(question, Icon::Critical, ui::Answer::No)) GiveUpLeftSale(context(), left.sale);
}

}  // namespace tpv
