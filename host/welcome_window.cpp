#include "host/welcome_window.h"

#include "host/store_choice_window.h"

namespace tpv {

WelcomeWindow::WelcomeWindow(ui::FrontEnd& front_end, std::vector<KnownShop> known, bool may_go_back)
    : Window(front_end, "frmBienvenida"), known_(std::move(known)) {
  caption = may_go_back ? "Otra tienda" : "Bienvenido";
  lblTexto.caption = known_.empty()
                         ? "Este equipo no tiene todavía ninguna tienda. ¿Por dónde quiere empezar?"
                         : "¿Con qué tienda quiere trabajar en este equipo?";
  std::vector<std::string> entries;
  for (const KnownShop& shop : known_) {
    const std::string where = Shortened(shop.store);
    entries.push_back(shop.name.empty() ? where : shop.name + " — " + where);
  }
  cboTienda.Offer(ui::Entries(std::move(entries)));
  cboTienda.columns = 56;
  cboTienda.stretch = true;
  Frame1.Rows({{&cboTienda, &cmdAbrir}});
  Frame1.visible = !known_.empty();
  Frame2.Rows({{&cmdCrear}, {&cmdDemostracion}, {&cmdAlmacen}, {&cmdVolver}});
  Spread(Frame2);
  if (!may_go_back) cmdVolver.caption = "&Salir";
  (known_.empty() ? cmdCrear : cmdAbrir).emphasis = ui::Emphasis::Strong;
  rows = {{&lblTexto}, {&Frame1}, {&Frame2}};
  cmdAbrir.click = [this] { Choose(known_.at(static_cast<std::size_t>(cboTienda.index)).store); };
  cmdCrear.click = [this] { Make(create_shop); };
  cmdDemostracion.click = [this] { Make(make_demonstration); };
  cmdAlmacen.click = [this] { OpenAnother(); };
  cmdVolver.click = [this] { Close(); };
}

void WelcomeWindow::Choose(const std::string& store) {
  if (store.empty()) return;
  chosen_ = store;
  Close();
}

void WelcomeWindow::Make(const Maker& maker) {
  try {
    Choose(maker());
  } catch (const std::exception& error) {
    Tell(error.what(), ui::Icon::Critical);
  }
}

void WelcomeWindow::OpenAnother() {
  StoreChoiceWindow window(front_end());
  front_end().ShowModal(window);
  Choose(window.chosen());
}

}  // namespace tpv
