// Lists the open tickets of one customer or of all, with what is pending on each.
#pragma once

#include <functional>

#include "screen/screen.h"

namespace tpv {

class FrmTpvPendiente : public Screen {
 public:
  // How a ticket of the list is shown whole; the sale screen stands above this one.
  using ShowSale = std::function<void(std::int32_t sale_id)>;

  FrmTpvPendiente(Context& ctx, ShowSale show_sale);

  std::int32_t IdCliente = 0;  // 0: all customers

  // Locks the filters and lists what they say now.
  void msCargaRegistros();

  ui::TextBoxes Text1{*this, "Text1"};

 protected:
  void OnF1(std::string_view tag) override;

 private:
  void DeclareLayout();
  void LeaveCustomer();
  bool FindByCode(std::int32_t code, std::int32_t id);
  void Run();
  std::vector<ui::GridColumn> Columns() const;
  void ShowTotal();
  void ShowTicket(int row, int column);
  void ShowAccount();

  ShowSale show_sale_;

  ui::Frame Frame1{*this, "Frame1", "Cobros pendientes"};
  ui::CheckBox Check1{*this, "Check1", "Desglosar ventas", true};
  ui::Button cmdInforme{*this, "cmdInforme", "&Buscar registros"};
  ui::Button cmdCuenta{*this, "cmdCuenta", "C&uenta"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Grid DbgDiario{*this, "DbgDiario"};
  ui::Label lblTotales{*this, "lblTotales", "Total :"};
};

}  // namespace tpv
