// The window that the program opens with: which shop, till and agent, and the
// screens of the component. It is the host that the component is made for.
#pragma once

#include <memory>
#include <string>

#include "host/open_shop.h"
#include "host/program.h"
#include "host/safety_copies.h"
#include "office/window.h"

namespace tpv {

class StartScreen : public office::Window {
 public:
  explicit StartScreen(Program program);
  ~StartScreen() override;

  void OnLoad() override;
  void OnFirstActivate() override;
  void OnCloseBox() override { Leave(); }
  void OnKeyUp(ui::Key key) override;
  // The shop's: of the searches that are opened from here.
  bool GivesListsAway() const override { return shop_ != nullptr; }
  void ExportList(ui::List& list, const std::string& path) override;
  void PrintList(ui::List& list, ui::ListPaper paper) override;
  std::vector<ui::StatusItem> Status() const override;

 protected:
  void OnEscape() override { Leave(); }

 private:
  void DeclareLayout();
  void InheritTill();
  bool Open(const std::string& store);
  void KeepChoice();
  void ShowShop();
  void OfferShops();
  std::string AskForShop();
  void FillAgents();
  std::int32_t Agent() const;
  bool CheckTill();
  void Remember();
  void ShowPrinter();
  void ShowCopies();
  void MakeCopy();
  void TellFailedCopy(bool wait);
  void Leave();
  void Run(const std::function<void()>& screen);
  void OpenOffice();
  void OpenPanel();
  void OpenSettings();
  void TellAbout();

  Program program_;
  Shops shops_;
  SafetyCopies copies_;
  std::unique_ptr<OpenShop> shop_;  // null: the till is closed
  KnownShop refused_;               // the one that could not be opened; no store for none
  std::string reason_;              // why
  std::string copy_warning_;        // short, "" for none

  ui::TextBoxes Text1{*this, "Text1"};  // 0 the shop, 1 the till
  ui::ComboBox cboVendedor{*this, "cboVendedor", "Vendedor"};
  ui::Button cmdTienda{*this, "cmdTienda", "Otra &tienda…"};
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
  ui::Button cmdPanel{*this, "cmdPanel", "Pane&l"};
  ui::Button cmdAyuda{*this, "cmdAyuda", "A&yuda"};
  ui::Button cmdAcercaDe{*this, "cmdAcercaDe", "&Acerca de"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  ui::Button cmdCopia{*this, "cmdCopia", "Copia de se&guridad"};
  ui::Button cmdAjustes{*this, "cmdAjustes", "A&justes de este equipo"};
  ui::Label lblImpresora{*this, "lblImpresora"};
  ui::Label lblCopia{*this, "lblCopia"};
};

}  // namespace tpv
