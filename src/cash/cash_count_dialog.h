// Counts the drawer before its till is closed: how many of each note and coin, what
// there should be, and where a difference may come from.
#pragma once

#include <optional>
#include <vector>

#include "cash/cash_count.h"
#include "cash/difference_search.h"
#include "screen/screen.h"

namespace tpv {

class FrmArqueo : public Screen {
 public:
  explicit FrmArqueo(Context& ctx);

  // Set before the form is shown. `count` holds what was counted before, if anything,
  // and what there should be; the entries are those of the period to close.
  CashCount count;
  std::int64_t initial = 0;  // cents that the till was opened with
  std::vector<DrawerEntry> entries;

  // What the operator accepted; nullopt when given up.
  const std::optional<CashCount>& Accepted() const { return accepted_; }

  // How many pieces of each denomination, by its index.
  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnKeyUp(ui::Key key) override;

 private:
  void DeclareLayout();
  bool Read();
  void ShowTotals();
  void Explain();
  void Accept();

  ui::Frame Frame1{*this, "Frame1", "Billetes"};
  ui::Frame Frame2{*this, "Frame2", "Monedas"};
  ui::Frame Frame3{*this, "Frame3", "Arqueo"};
  ui::Frame Frame4{*this, "Frame4", "De dónde puede venir la diferencia"};
  ui::TextBox txtEsperado{*this, "txtEsperado"};
  ui::TextBox txtContado{*this, "txtContado"};
  ui::TextBox txtDiferencia{*this, "txtDiferencia"};
  ui::ListView lvwMotivos{*this, "lvwMotivos"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar la diferencia"};
  ui::Button cmdAceptar{*this, "cmdAceptar", "&Aceptar"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar"};

  std::optional<CashCount> accepted_;
};

}  // namespace tpv
