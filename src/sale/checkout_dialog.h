// Closes a sale: the customer and address on the ticket, what was paid, the
// change, and how it ends: ticket, no ticket, invoice, or cancelled.
#pragma once

#include <functional>
#include <optional>

#include "invoicing/ticket_invoice.h"
#include "sale/payment.h"
#include "screen/lookups.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpv1 : public Screen {
 public:
  explicit FrmTpv1(Context& ctx);

  // Loads a customer by code or id; with -1 and 0 the cashier searches first.
  void msBuscarClientes(std::int32_t code, std::int32_t id);
  // Writes customer, address and collected mark into the ticket's header. Throws
  // DatabaseError when the store refuses it.
  void msActualizaClienteAlbaran();
  // Whether the sale was finished or cancelled.
  bool Completed() const { return completed_; }
  bool Cancelled() const { return cancelled_; }
  // Series and number of the invoice that was made; "" for none.
  const std::string& Invoice() const { return invoice_; }
  // What the fields say of the payment; total, cash, card and change in euros.
  Payment ReadPayment() const;

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnKeyUp(ui::Key key) override;

 protected:
  void OnF1(std::string_view tag) override;
  void OnF5() override;

 private:
  enum class Ending { Ticket, NoTicket };

  // layout
  void DeclareFields();
  void DeclareLayout();
  void Connect();

  // lists and totals
  void EnableCommands();
  void FillLists();
  void LoadTotals();

  // customer
  void ShowCustomer(const CustomerRecord& customer);
  void SelectCountry(const Variant& code);
  void LeaveCustomer();
  void NewCustomer();
  void ShowPending();

  // payment
  void FollowChange();
  void LeaveAmount(ui::TextBox& box);
  bool CheckFields();
  bool CheckPayment();
  bool AcceptShortfall();
  bool ConfirmChange(double limit);
  void FocusPayment();
  void End(Ending ending);
  void Complete();
  bool Stored(const std::function<void()>& store);
  // Whether a ticket opens the drawer.
  bool StorePayment();
  bool OpensDrawer();
  bool DoubtfulPaymentIsStored();
  void RecordPayment();
  std::int32_t InsertEntry(const JournalEntry& entry);
  void RefusePayment(const char* reason);
  void CancelTheSale();

  // invoice
  void EndWithInvoice();
  void EndWithStoredPayment();
  void Issue(const TicketInvoice& invoice);
  std::int32_t PaymentMethod() const;
  bool CheckNotInvoiced();
  bool CheckBuyer();
  bool CheckPaymentMethod(const CustomerRecord& customer);
  TicketInvoice InvoiceOf(const CustomerRecord& customer, const InvoiceParameters& asked);

  ui::ComboBox cboFpago{*this, "cboFpago", "Forma de pago"};
  ui::ComboBox cboTipoVia{*this, "cboTipoVia", "Tipo de Via"};
  ui::ComboBox cboProvincias{*this, "cboProvincias", "Provincia"};
  ui::ComboBox cboPais{*this, "cboPais", "Pais"};
  ui::Frame Frame1{*this, "Frame1", "Cobro"};
  ui::Frame Frame2{*this, "Frame2", "Importes Totales"};
  ui::Frame Frame3{*this, "Frame3", "Cliente"};
  ui::Button cmdTicket{*this, "cmdTicket", "Finalizar: &Ticket de venta"};
  ui::Button cmdFinalizar{*this, "cmdFinalizar", "Finalizar: Sin Ticket"};
  ui::Button cmdFactura{*this, "cmdFactura", "Finalizar: Emision de &Factura"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar venta"};
  ui::Button cmdPendiente{*this, "cmdPendiente", "Ver Pendiente"};
  ui::Button cmdNuevoCli{*this, "cmdNuevoCli", "Nuevo Cliente"};

  std::int32_t customer_id_ = 0;
  bool on_credit_ = false;
  std::int32_t entry_id_ = 0;           // of the payment being stored
  std::int32_t doubtful_entry_id_ = 0;  // its commit got no answer; 0 for none
  bool completed_ = false;
  bool cancelled_ = false;
  std::string invoice_;
  std::string followed_;  // the amounts that the change was last made for
  double total_ = 0;
};

}  // namespace tpv
