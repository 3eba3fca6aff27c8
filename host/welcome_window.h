// Which shop this machine works on: the first window of a machine that has none, and the
// way to another one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/shops.h"
#include "office/window.h"

namespace tpv {

class WelcomeWindow : public office::Window {
 public:
  // Makes a shop's store and says where it is; "" when the operator gave it up.
  using Maker = std::function<std::string()>;

  WelcomeWindow(ui::FrontEnd& front_end, std::vector<KnownShop> known, bool may_go_back);

  Maker create_shop;
  Maker make_demonstration;

  // The store that was chosen; "" for none.
  const std::string& chosen() const { return chosen_; }

 private:
  void Choose(const std::string& store);
  void Make(const Maker& maker);
  void OpenAnother();

  std::vector<KnownShop> known_;
  std::string chosen_;

  ui::Label lblTexto{*this, "lblTexto"};
  ui::ComboBox cboTienda{*this, "cboTienda", "Tiendas de este equipo"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::Frame Frame2{*this, "Frame2"};
  ui::Button cmdAbrir{*this, "cmdAbrir", "&Abrir esta tienda"};
  ui::Button cmdCrear{*this, "cmdCrear", "&Crear mi tienda"};
  ui::Button cmdDemostracion{*this, "cmdDemostracion", "&Probar con la demostración"};
  ui::Button cmdAlmacen{*this, "cmdAlmacen", "Abrir un al&macén o servidor"};
  ui::Button cmdVolver{*this, "cmdVolver", "&Volver"};
};

}  // namespace tpv
