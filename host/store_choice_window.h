// Points to a store that is there already: a file of this machine, or a server.
#pragma once

#include <string>

#include "office/window.h"

namespace tpv {

class StoreChoiceWindow : public office::Window {
 public:
  explicit StoreChoiceWindow(ui::FrontEnd& front_end);

  // As in Shops; "" for none.
  const std::string& chosen() const { return chosen_; }

 private:
  void Browse();
  void Accept();

  std::string chosen_;
  ui::TextBoxes Text1{*this, "Text1"};  // 0 the file, 1 the connection
  ui::Label lblServidor{*this, "lblServidor"};
  ui::Frame Frame1{*this, "Frame1", "En este equipo"};
  ui::Frame Frame2{*this, "Frame2", "En un servidor"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar…"};
  ui::Button cmdAceptar{*this, "cmdAceptar", "&Abrir"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar"};
};

}  // namespace tpv
