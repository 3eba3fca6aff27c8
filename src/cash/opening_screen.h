// Opens a till: a counted initial amount, proposed from the last closure.
#pragma once

#include <functional>

#include "cash/opening.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpvAperturaCaja : public Screen {
 public:
  explicit FrmTpvAperturaCaja(Context& ctx);

  // Empties every text box.
  void msValoresiniciales();
  // Shows the figures of the last closure of the till in box 13 and proposes its
  // final balance; nothing changes for a till that was never closed.
  void ShowLastClosure();

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnF1(std::string_view) override {}  // does nothing here

 private:
  void DeclareFields();
  void LeaveAgent();
  std::unique_ptr<Recordset> LastClosure();
  void ShowRounded(int index, double euros);
  bool Check();
  void Save();
  TillOpening Entered() const;
  bool Try(const std::function<void()>& step);

  ui::Frame fraAgente{*this, "fraAgente"};
  ui::Frame Frame1{*this, "Frame1", "Información del último cierre"};
  ui::Button cmdGrabar{*this, "cmdGrabar", "&Grabar Apertura"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Cancelar/Salir"};
};

}  // namespace tpv
