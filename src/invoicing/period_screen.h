// Turns a period's tickets that are not invoiced yet into one invoice to the
// counter customer.
#pragma once

#include "invoicing/seen_tickets.h"
#include "invoicing/ticket_invoice.h"
#include "screen/lookups.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpvFacturas : public Screen {
 public:
  explicit FrmTpvFacturas(Context& ctx);

  ui::TextBoxes Text1{*this, "Text1"};

 private:
  void DeclareFields();
  void ForgetSearch();
  void Search();
  void Read(ui::LongWork& work);
  void ShowTotals(const std::string& days);
  void ShowTickets();
  void Invoice();
  std::string StoreAndIssue(Object& invoicing, TicketInvoice invoice, ui::LongWork& work);
  TicketInvoice InvoiceTo(const CustomerRecord& customer, const InvoiceParameters& asked) const;

  ui::Button cmdInforme{*this, "cmdInforme", "Buscar registros"};
  ui::Button cmdFacturar{*this, "cmdFacturar", "Generar factura"};
  ui::Button cmdSalir{*this, "cmdSalir", "Salir"};
  ui::Frame Frame4{*this, "Frame4", "Totales del informe"};
  ui::Grid DbgDiario{*this, "DbgDiario"};

  // The pending tickets of the last search: " WHERE …", and its days as shown.
  std::string tickets_;
  SeenTickets seen_;  // that they are
  std::string from_;
  std::string to_;
};

}  // namespace tpv
