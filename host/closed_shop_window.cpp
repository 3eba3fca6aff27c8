#include "host/closed_shop_window.h"

#include <filesystem>

#include "base/mask.h"
#include "host/backup.h"
#include "host/chosen_store.h"

namespace tpv {

ClosedShopWindow::ClosedShopWindow(ui::FrontEnd& front_end, const Settings& settings, const Clock& clock,
                                   const KnownShop& shop, const std::string& reason)
    : Window(front_end, "frmTiendaCerrada"), settings_(settings), clock_(clock), store_(shop.store) {
  caption = "La tienda no se puede abrir";
  warning = true;
  const std::string where = Shortened(store_);
  lblTienda.caption = shop.name.empty() ? where : shop.name + " — " + where;
  lblTienda.large = true;
  for (ui::Label* label : {&lblTienda, &lblMotivo, &lblAviso}) label->stretch = true;
  lblMotivo.caption = reason;
  lblAviso.caption = "La caja queda cerrada. Esta tienda sigue recordada y no se abre ninguna otra en su lugar.";
  Frame1.Rows({{&lblTienda}, {&lblMotivo}, {&lblAviso}});
  Frame2.Rows({{&cmdReintentar, &cmdOtra}, {&cmdCopia, &cmdSalir}});
  Spread(Frame2);
  rows = {{&Frame1}, {&Frame2}};
  cmdReintentar.emphasis = ui::Emphasis::Strong;
  cmdCopia.enabled = !IsServerStore(store_);
  cmdReintentar.click = [this] { Take(Way::Retry); };
  cmdOtra.click = [this] { Take(Way::Another); };
  cmdCopia.click = [this] { Restore(); };
  cmdSalir.click = [this] { Take(Way::Leave); };
}

void ClosedShopWindow::Take(Way way) {
  way_ = way;
  Close();
}

// Of those in the copies' folder, or another file when there are none.
std::string ClosedShopWindow::ChosenCopy() const {
  const BackupPlan plan = PlannedBackup(settings_, store_);
  const std::vector<std::string> copies = Backups(plan);
  if (copies.empty()) {
    return front_end().ChooseFile({"Copia de seguridad", "Copias (*.db.gz)", plan.folder});
  }
  ui::SearchRequest request;
  request.title = "Copias de seguridad de " + plan.folder;
  request.captions = {"Fecha", "Fichero"};
  request.widths = {2500, 6000};
  request.shown_columns = {0, 1};
  for (const std::string& copy : copies) {
    const auto made = MadeAt(plan, copy);
    request.rows.push_back({Variant(made ? FormatDate(*made, "DD/MM/YYYY HH:MM") : ""),
                            Variant(std::filesystem::path(copy).filename().string())});
  }
  const auto chosen = front_end().Search(request);
  return chosen ? copies.at(*chosen) : std::string();
}

void ClosedShopWindow::Restore() {
  const std::string copy = ChosenCopy();
  if (copy.empty()) return;
  if (!Confirm("¿Recuperar la tienda como estaba en «" + copy +
               "»?\r\nLo vendido después no está en ella. Lo que hay ahora no se borra: se aparta con otro nombre.")) {
    return;
  }
  try {
    const std::string aside = RestoreStore(copy, store_, clock_);
    Tell(aside.empty() ? "Recuperada" : "Recuperada. Lo que había está en " + aside);
    Take(Way::Retry);
  } catch (const std::exception& error) {
    Tell(std::string("No se ha recuperado nada.\r\n") + error.what(), ui::Icon::Critical);
  }
}

}  // namespace tpv
