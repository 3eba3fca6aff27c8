// Lists the tickets sold and the money collected over a range of dates, all
// tills together; from here a ticket is reprinted, looked at or deleted.
#pragma once

#include <string>
#include <vector>

#include "screen/screen.h"

namespace tpv {

class FrmTpvDiarioVentas : public Screen {
 public:
  explicit FrmTpvDiarioVentas(Context& ctx);

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnF1(std::string_view) override {}  // does nothing here

 private:
  void DeclareFields();
  void DeclareLayout();
  void Connect();

  void Run();
  void Read(ui::LongWork& work);
  void Forget();
  void ShowSalesTotals(const std::string& days);
  void ShowCollectionTotals(const std::string& days);
  void ShowLists(const std::string& days);
  void ShowBreakdown(const std::string& days);
  void ShowDeleted(const std::string& days);
  void RunAgain();

  void OpenTicketMenu(int row, int column);
  std::int32_t SelectedTicket() const;
  void PrintTicket();
  void Delete();
  bool AcceptWhatRelies(std::int32_t sale_id, const std::string& ticket);
  bool DeleteInStore(std::int32_t sale_id, std::string& refusal);

  ui::CheckBox Check1{*this, "Check1", "Desglosar ventas"};
  ui::CheckBox Check2{*this, "Check2", "Totales por caja"};
  ui::CheckBox Check3{*this, "Check3", "Totales por vendedor"};
  ui::CheckBox Check4{*this, "Check4", "Anulados"};
  ui::Button cmdInforme{*this, "cmdInforme", "&Buscar registros"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Frame Frame4{*this, "Frame4", "Información de Ventas"};
  ui::Grid DbgDiario{*this, "DbgDiario"};
  ui::Grid dbgCajas{*this, "dbgCajas"};
  ui::Grid dbgVendedor{*this, "dbgVendedor"};
  ui::Frame Frame5{*this, "Frame5", "Ventas anuladas"};
  ui::Grid dbgAnulados{*this, "dbgAnulados"};
  ui::Frame Frame1{*this, "Frame1", "Información de cobros"};
  ui::Grid dbgCobPag{*this, "dbgCobPag"};
  ui::Menu mnu00{*this, "mnu00"};
  bool listed_ = false;
  std::vector<std::string> accepted_;  // what was said of the ticket to delete
};

}  // namespace tpv
