// Prints the ticket of a closure on a chosen printer and mails it; or asks for
// the parameters of an invoice of tickets.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "screen/screen.h"

namespace tpv {

// What the operator decided about an invoice; all empty when not confirmed.
struct InvoiceParameters {
  std::string series;
  std::string date;  // as typed: dd/mm/yyyy
  std::string observations;
  bool in_portfolio = true;  // not collected yet
  bool confirmed = false;
};

class FrmFactuTicket : public Screen {
 public:
  enum class Mode : std::int16_t { InvoiceParameters = 0, ClosurePrint = 1 };

  explicit FrmFactuTicket(Context& ctx);

  // Set before the form is loaded or shown.
  Mode mode = Mode::InvoiceParameters;
  std::int32_t closure_id = 0;  // DiaCaj_Id of the closure to print

  // A caller that loads the form first may preset box 7 (observations) and the
  // check box.
  ui::TextBoxes Text1{*this, "Text1"};
  ui::CheckBox chkRecCar{*this, "chkRecCar", "Factura en situación de cobrada"};

  // What invoice mode hands back once the form is closed.
  const InvoiceParameters& Invoice() const { return invoice_; }

  void OnLoad() override;
  void OnUnload() override;

 private:
  void Confirm();
  void HandBackInvoice();
  void PrintClosure();
  void ChoosePrinter();
  void ShowChosenPrinter();
  void UseChosenPrinter();

  ui::Frame Frame1{*this, "Frame1", "Valores de impresión"};
  ui::Frame Frame2{*this, "Frame2", "Parámetros de la factura"};
  ui::Button cmdImpresoras{*this, "cmdImpresoras", "Cambiar &Impresora"};
  ui::Button cmdFacturar{*this, "cmdFacturar", "C&onfirmar"};
  ui::Button XPButton1{*this, "XPButton1", "&Cancelar"};

  InvoiceParameters invoice_;
  std::string previous_printer_;
  std::shared_ptr<Object> spool_;
};

}  // namespace tpv
