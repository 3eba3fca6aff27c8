// Lists the closures by dates, agent and till, hands the list to the reports
// component, and prints a closure's ticket again.
#pragma once

#include "screen/screen.h"

namespace tpv {

class FrmTpvDiarioCierres : public Screen {
 public:
  explicit FrmTpvDiarioCierres(Context& ctx);

  ui::TextBoxes Text1{*this, "Text1"};

 protected:
  void OnF1(std::string_view tag) override;

 private:
  void DeclareFields();
  bool ShowAgent(std::int32_t id);
  void LeaveAgent();
  std::string Filter() const;
  void Run();
  std::string MakeReport();  // where it is
  void Report();
  void PrintAgain();

  ui::Frame Frame1{*this, "Frame1", "Diario de cierres de caja"};
  ui::Button cmdInforme{*this, "cmdInforme", "&Buscar cierres"};
  ui::Button cmdGenerar{*this, "cmdGenerar", "&Generar informe"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Grid DbgDiario{*this, "DbgDiario"};
  ui::Label lblInforme{*this, "lblInforme"};
  ui::Menu mnu00{*this, "mnu00"};
};

}  // namespace tpv
