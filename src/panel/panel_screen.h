// How the shop goes: a period's sales in figures and pictures beside the period before.
#pragma once

#include <array>
#include <optional>

#include "panel/board.h"
#include "panel/pictures.h"
#include "screen/screen.h"

namespace tpv {

class FrmPanel : public Screen {
 public:
  explicit FrmPanel(Context& ctx);

  ui::TextBoxes Text1{*this, "Text1"};  // 5 and 2 the days, 20… the figures, 30… those of before

  void OnLoad() override;

 protected:
  void OnF5() override { Run(); }

 private:
  void DeclareFields();
  void DeclareLayout();
  void ChoosePeriod();
  void ShowPage();
  // What the fields ask for; nullopt when it was refused.
  std::optional<panel::Periods> Asked();
  bool IsAskedByDates() const;
  void Run();
  void ShowBoard();
  void MakeReport();

  ui::ComboBox cboPeriodo{*this, "cboPeriodo", "Periodo"};
  ui::Button cmdVer{*this, "cmdVer", "&Ver"};
  ui::Button cmdPdf{*this, "cmdPdf", "Panel en &PDF"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Frame Frame1{*this, "Frame1", "Qué días"};
  ui::Frame Frame2{*this, "Frame2", "Este periodo"};
  ui::OptionButton optVentas{*this, "optVentas", "&Cuándo se vende"};
  ui::OptionButton optDetalle{*this, "optDetalle", "&Quién y qué se vende"};
  ui::OptionButton optPendiente{*this, "optPendiente", "Pendiente y &existencias"};
  ui::Label lblInforme{*this, "lblInforme"};

  // In the order of panel::Picture.
  std::array<ui::Chart, panel::kPictures> charts_{
      ui::Chart{*this, "chtDias"},       ui::Chart{*this, "chtHoras"},     ui::Chart{*this, "chtCobros"},
      ui::Chart{*this, "chtVendedores"}, ui::Chart{*this, "chtCajas"},     ui::Chart{*this, "chtArticulos"},
      ui::Chart{*this, "chtIva"},        ui::Chart{*this, "chtPendiente"}, ui::Chart{*this, "chtExistencias"}};
  std::optional<panel::Board> board_;  // as shown
};

}  // namespace tpv
