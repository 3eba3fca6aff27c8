// A shop that cannot be opened: why, and what can be done. Nothing is sold meanwhile, and no
// other store is taken for it.
#pragma once

#include <string>

#include "host/shops.h"
#include "office/window.h"

namespace tpv {

class Clock;
class Settings;

class ClosedShopWindow : public office::Window {
 public:
  enum class Way { Retry, Another, Leave };

  // The arguments outlive the window; `reason` as the store gave it.
  ClosedShopWindow(ui::FrontEnd& front_end, const Settings& settings, const Clock& clock, const KnownShop& shop,
                   const std::string& reason);

  Way way() const { return way_; }

 private:
  void Take(Way way);
  void Restore();
  std::string ChosenCopy() const;

  const Settings& settings_;
  const Clock& clock_;
  const std::string store_;
  Way way_ = Way::Leave;

  ui::Label lblTienda{*this, "lblTienda"};
  ui::Label lblMotivo{*this, "lblMotivo"};
  ui::Label lblAviso{*this, "lblAviso"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::Frame Frame2{*this, "Frame2"};
  ui::Button cmdReintentar{*this, "cmdReintentar", "&Volver a intentarlo"};
  ui::Button cmdOtra{*this, "cmdOtra", "&Otra tienda…"};
  ui::Button cmdCopia{*this, "cmdCopia", "Recuperar una &copia…"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
};

}  // namespace tpv
