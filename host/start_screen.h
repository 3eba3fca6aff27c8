// The window that the program opens with: which store, till and agent, and the
// screens of the component. It is the host that the component is made for.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "component/zrtpve.h"
#include "host/safety_copies.h"
#include "office/tools.h"
#include "platform/ui/form.h"
#include "platform/ui/front_end.h"
#include "suite/suite_factory.h"

namespace tpv {

class Machine;
class StoreErrands;

class StartScreen : public ui::Form {
 public:
  // All references outlive the screen.
  StartScreen(Machine& machine, ui::FrontEnd& front_end, Sound& sound);
  ~StartScreen() override;

  // Lets the operator point to a store's file; "" for none. Unset: the path is typed.
  std::function<std::string(const std::string& current)> choose_file;
  office::Tools tools;  // the office's

  void OnLoad() override;
  void OnKeyUp(ui::Key key) override;
  void OnCloseBox() override { Leave(); }
  std::vector<ui::StatusItem> Status() const override;

 private:
  void DeclareLayout();
  void ChooseStore();
  void OpenTyped();
  void InheritTill();
  bool Open(const std::string& path);
  std::unique_ptr<Connection> Connect(const std::string& path);
  void FillAgents();
  std::int32_t Agent() const;
  bool CheckTill();
  void Remember();
  void ProtectSettings();
  void ShowPrinter();
  void ShowCopies();
  void MakeCopy();
  void TellFailedCopy(bool wait);
  void Leave();
  void Run(const std::function<void()>& screen);
  void OpenOffice();
  void TellAbout();
  void Tell(const std::string& text, ui::Icon icon);

  Machine& machine_;
  ui::FrontEnd& front_end_;
  suite::SuiteFactory objects_;
  Ports ports_;
  std::unique_ptr<Connection> connection_;
  std::unique_ptr<StoreErrands> errands_;
  std::unique_ptr<Zrtpve> component_;
  std::string opened_;  // the store's path
  SafetyCopies copies_;
  std::string copy_warning_;  // short, "" for none

  ui::TextBoxes Text1{*this, "Text1"};  // 0 the store, 1 the till
  ui::ComboBox cboVendedor{*this, "cboVendedor", "Vendedor"};
  ui::Button cmdAlmacen{*this, "cmdAlmacen", "&Buscar…"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::Frame Frame2{*this, "Frame2"};
  ui::Button cmdVenta{*this, "cmdVenta", "&Venta"};
  ui::Button cmdMovimientos{*this, "cmdMovimientos", "&Cobros y pagos"};
  ui::Button cmdCierre{*this, "cmdCierre", "Cie&rre de caja"};
  ui::Button cmdDiario{*this, "cmdDiario", "&Diario de ventas"};
  ui::Button cmdDiarioCaja{*this, "cmdDiarioCaja", "Diario de ci&erres"};
  ui::Button cmdFacturacion{*this, "cmdFacturacion", "&Facturación de tickets"};
  ui::Button cmdPendiente{*this, "cmdPendiente", "&Pendiente de cobro"};
  ui::Button cmdProveedores{*this, "cmdProveedores", "Pr&oveedores"};
  ui::Button cmdOficina{*this, "cmdOficina", "Ofici&na"};
  ui::Button cmdAyuda{*this, "cmdAyuda", "A&yuda"};
  ui::Button cmdAcercaDe{*this, "cmdAcercaDe", "&Acerca de"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Button cmdCopia{*this, "cmdCopia", "Copia de se&guridad"};
  ui::Label lblImpresora{*this, "lblImpresora"};
  ui::Label lblCopia{*this, "lblCopia"};
};

// The store of a user who chose none: the demonstration shop, made on first start.
std::string UsualStore();

}  // namespace tpv
