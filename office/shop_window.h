// A new shop written down in one window: all that its first sale needs, checked and stored
// at once, with everything but the shop's own address proposed.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "office/ini.h"
#include "office/list_editor.h"
#include "office/paged_window.h"
#include "office/shop_setup.h"

namespace tpv::office {

class ShopWindow : public PagedWindow {
 public:
  // Stores the shop at that place, whole or not at all; throws what storing throws.
  using Maker = std::function<Refusals(const std::string& place, const ShopSetup& setup)>;
  // Where a shop of that name would be stored.
  using Proposal = std::function<std::string(const std::string& name)>;

  ShopWindow(ui::FrontEnd& front_end, Maker make, Proposal propose);

  // Where it was stored; "" while it was not.
  const std::string& stored() const { return stored_; }

 private:
  void DeclarePages();
  ui::TextBox& Box(int index);
  Ini Typed() const;
  void ProposePlace();
  std::vector<std::pair<const char*, ListEditor*>> Lists();
  void TellRefusals(const Refusals& refusals);
  void Accept();

  const Maker make_;
  const Proposal propose_;
  std::string stored_;
  std::string proposed_;

  ui::TextBoxes Text1{*this, "Text1"};
  ui::CheckBox chkRecargo{*this, "chkRecargo", "Se cobra recargo de equivalencia en todas las ventas (a comerciantes de ese régimen)"};
  ui::CheckBox chkRapida{*this, "chkRapida", "Entrada rápida: lo leído se vende sin confirmarlo"};
  ui::ComboBox cboDocumentos{*this, "cboDocumentos", "Con qué se termina una venta"};
  ui::ComboBox cboDecimalesPrecio{*this, "cboDecimalesPrecio", "Decimales de los precios sin IVA"};
  ui::ComboBox cboDecimalesUnidades{*this, "cboDecimalesUnidades", "Decimales de las unidades"};
  ui::ComboBox cboCajon{*this, "cboCajon", "Cómo se abre el cajón"};
  ListEditor sellers_;
  ListEditor methods_;
  ListEditor banks_;
  ListEditor taxes_;
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar…"};
  ui::Button cmdAceptar{*this, "cmdAceptar", "&Crear la tienda"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "C&ancelar"};
  ui::Label lblFalta{*this, "lblFalta", "Hacen falta los datos de 1 y un vendedor en 3: lo demás ya vale para empezar."};
  // Which control has what shop.ini calls so.
  std::map<std::string, ui::Control*> controls_;
};

}  // namespace tpv::office
