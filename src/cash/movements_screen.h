// Cash that enters or leaves the till outside a sale: later collection of tickets
// sold on credit, and payments out of the drawer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "debt/open_tickets.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpvMovCaja : public Screen {
 public:
  explicit FrmTpvMovCaja(Context& ctx);

  // Set before showing: collections can be chosen too. Otherwise the screen does
  // payments out alone.
  bool bCompleto = false;

  // Looks a customer up by code or id, or with -1 and 0 through the search
  // dialog, and lists its open tickets. Returns whether one was found.
  bool msBuscarClientes(std::int32_t code, std::int32_t id);

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnFirstActivate() override;

 protected:
  void OnF1(std::string_view tag) override;

 private:
  void DeclareFields();
  void DeclareLayout();
  void Connect();

  void ShowKind();
  void LeaveAgent();
  void LeaveCustomer();
  void ForgetCustomer();
  void LeaveAmount(int index);

  static ui::ListItem ItemOf(const ListedTicket& listed);
  void ListTickets();
  void ShowSums();
  std::vector<Share> Shares() const;
  double Selected() const;
  double Change() const;

  // The last failed check's text and the field concerned; "" when all hold.
  struct Failed {
    std::string text;
    ui::Control* field = nullptr;
  };
  Failed Check();
  void CheckHead(Failed& failed);
  void CheckCollection(Failed& failed);
  void CheckPayment(Failed& failed);

  void Save();
  void GiveReceipt();
  bool SaveCollection();
  bool SavePayment();
  template <typename Write>
  bool InTransaction(Write write);
  void RequireUnchanged(const std::vector<Share>& shares) const;
  std::int32_t InsertEntry(const std::string& note);
  void Pay(std::int32_t entry, const Share& share);
  std::string Note(const std::vector<Share>& shares) const;

  ui::CheckBox Check1{*this, "Check1", "Fecha sistema", true};
  ui::OptionButton Option1_0{*this, "Option1(0)", "Entradas/Cobros"};
  ui::OptionButton Option1_1{*this, "Option1(1)", "Salidas/Pagos"};
  ui::CheckBox Check2{*this, "Check2", "Dar por cobradas las ventas más antiguas"};
  ui::OptionButton Option3{*this, "Option3", "Metálico "};
  ui::OptionButton Option4{*this, "Option4", "Tarjeta"};
  ui::ListView ListView1{*this, "ListView1"};
  ui::Frame Frame1{*this, "Frame1"};  // who, when, which till
  ui::Frame frmCobros{*this, "frmCobros", "Entradas/Cobros"};
  ui::Frame frmPagos{*this, "frmPagos", "Salidas/Pagos"};
  ui::Button cmdTicket{*this, "cmdTicket", "&Guardar Movimiento"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "Cancelar"};

  std::int32_t customer_id_ = 0;
  std::int32_t customer_code_ = 0;
  std::int32_t stored_entry_ = 0;    // DiaCaj_Id of the movement stored last
  std::vector<OpenTicket> tickets_;  // as listed, oldest first
};

}  // namespace tpv
