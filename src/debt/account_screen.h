// The account of one customer on the screen and as a PDF.
#pragma once

#include <string>

#include "debt/customer_account.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpvCuenta : public Screen {
 public:
  // `customer_id` is a stored customer's; its code and name as the caller shows them.
  FrmTpvCuenta(Context& ctx, std::int32_t customer_id, const std::string& code,
               const std::string& customer);

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;

 private:
  void Run();
  void ShowEntries();
  void MakeReport();

  ui::Frame Frame1{*this, "Frame1", "Cuenta del cliente"};
  ui::Frame Frame2{*this, "Frame2"};
  ui::Button cmdInforme{*this, "cmdInforme", "&Buscar registros"};
  ui::Button cmdPdf{*this, "cmdPdf", "Extracto en &PDF"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::ListView ListView1{*this, "ListView1"};
  ui::Label lblTotales{*this, "lblTotales"};
  ui::Label lblInforme{*this, "lblInforme"};

  std::int32_t customer_id_;
  CustomerAccount account_;  // as listed
};

}  // namespace tpv
