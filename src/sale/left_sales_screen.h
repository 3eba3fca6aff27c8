// The sales that wait to be gone on with, to take one up at this till, park it or
// give it up.
#pragma once

#include <optional>
#include <vector>

#include "sale/left_sales.h"
#include "screen/screen.h"

namespace tpv {

class FrmVentasAparcadas : public Screen {
 public:
  FrmVentasAparcadas(Context& ctx, std::int16_t till);

  // What is now the context's sale; nullopt when none was taken up.
  const std::optional<LeftSale>& TakenUp() const { return taken_up_; }
  // Whether there are any. The screen must be loaded.
  bool Empty() const { return left_.empty(); }

  void OnLoad() override;

 private:
  void DeclareLayout();
  void List();
  void ShowChosen();
  const LeftSale* Chosen() const;
  void TakeUp(const LeftSale& left);
  void Park(const LeftSale& left);
  void GiveUp(const LeftSale& left);
  template <typename Act>
  void WithChosen(Act act);

  ui::ListView ListView1{*this, "ListView1"};
  ui::Label lblAviso{*this, "lblAviso"};
  ui::Button cmdRecuperar{*this, "cmdRecuperar", "&Recuperar"};
  ui::Button cmdAparcar{*this, "cmdAparcar", "&Aparcar"};
  ui::Button cmdEliminar{*this, "cmdEliminar", "&Eliminar venta"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};

  std::int16_t till_;
  std::vector<LeftSale> left_;  // as listed
  std::optional<LeftSale> taken_up_;
};

}  // namespace tpv
