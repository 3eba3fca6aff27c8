// The till operator's main screen: start a sale, enter articles, see lines and
// totals, finish or cancel; and from here the till's other operations.
#pragma once

#include <functional>
#include <optional>

#include "sale/payment.h"
#include "sale/quick_keys.h"
#include "sale/sale_entry.h"

namespace tpv {

class FrmTpv1;
class FrmTpvAperturaCaja;

class FrmTpv : public SaleEntry {
 public:
  explicit FrmTpv(Context& ctx);

  // Shows the stored sale `id`, read-only. The screen must be loaded.
  void msPintaVenta(std::int32_t id);

  // Set before showing: the till's operations are disabled at first activation.
  bool bSoloConsulta = false;

  void OnLoad() override;
  void OnFirstActivate() override;
  bool OnKeyDown(ui::Key key) override;
  void OnCloseBox() override { Exit(); }
  std::vector<ui::StatusItem> Status() const override;

 protected:
  void OnEscape() override;
  void OnF5() override;
  void ShowLinesAndTotals() override;
  void StartOrCancel() override;
  void Accept() override;
  void Drop() override;
  void AwaitAcceptance() override { cmdGuardar.enabled = true; }

 private:
  // layout
  void DeclareFields();
  void DeclareLayout();
  void ConnectFields();
  void ConnectButtons();

  // head of the sale
  void LeaveTill();
  bool AskTill() override;
  bool CanOpenTill();
  void HandHead(FrmTpvAperturaCaja& opening);

  // the sale
  void Start();
  void ShowSaleInProgress();
  void Cancel();
  void Finish();
  void ShowReference(std::int32_t sale_id);
  void Open(FrmTpv1& checkout);
  void EmptyAfterSale();
  void ShowTotals();

  // sales put aside
  void OfferLeftSales();
  void CountParked();
  void ChooseLeftSale(std::int16_t till);
  void TakeUp();
  void GoOn();
  void GoOnReturning();
  void ShowOwnHead();
  void Park();
  bool IsUnfinished(std::int32_t sale_id);

  // the line being entered
  void EndLine();
  void EditLine(int row, int column);

  // What a quick key does: as its article's code were scanned.
  void PressKey(const std::string& code);

  // the till's operations
  void Reprint();
  void OpenTill();
  void OpenReturns();
  void CloseTill();
  void MoveCash();
  void Exit();

  // The sale that was finished last, until the next one begins.
  struct Finished {
    std::string ticket;
    std::string invoice;  // "" for none
    Payment payment;
  };
  std::optional<Finished> finished_;

  // The operator's seller and date, while a sale with its own is gone on with.
  struct Head {
    std::string agent;
    std::string agent_name;
    std::int32_t agent_id = 0;
    bool system_date = true;
    std::string date;
  };
  std::optional<Head> head_;
  std::optional<std::int16_t> offered_till_;  // whose unfinished sales were offered
  std::size_t parked_ = 0;                    // sales, of all tills, when last asked

  ui::Grid dbgVenta{*this, "dbgVenta"};
  ui::Frame Frame1{*this, "Frame1"};                       // head
  ui::Frame Frame2{*this, "Frame2"};                       // line
  ui::Frame Frame3{*this, "Frame3"};                       // till operations
  ui::Frame Frame4{*this, "Frame4", "Importes Totales"};
  ui::Button cmdFinalizar{*this, "cmdFinalizar", "&Finalizar Venta"};
  ui::Button cmdGuardar{*this, "cmdGuardar", "&Guardar línea"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "Cancelar &línea"};
  ui::Button cmdDevoluciones{*this, "cmdDevoluciones", "&Devoluciones"};
  ui::Button cmdPagos{*this, "cmdPagos", "&Pagos y cobros"};
  ui::Button cmdApertura{*this, "cmdApertura", "&Apertura caja"};
  ui::Button cmdCierre{*this, "cmdCierre", "Cie&rre caja"};
  ui::Button cmdReImprimir{*this, "cmdReImprimir", "Re&imprimir"};
  ui::Button cmdAbreCajon{*this, "cmdAbreCajon", "A&brir cajón"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "B&uscar"};
  ui::Button cmdAparcar{*this, "cmdAparcar", "Aparcar"};
  ui::Button cmdRecuperar{*this, "cmdRecuperar", "Recuperar"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  QuickKeys keys_{*this, [this](const std::string& code) { PressKey(code); }};
};

// Opens a sale screen on a stored sale, read-only, and waits until it is closed.
// `consult_only` disables the till's operations too.
void ShowStoredSale(Context& context, std::int32_t sale_id, bool consult_only = false);

// The same, to be handed to a screen that stands below this one. The context
// outlives it.
std::function<void(std::int32_t sale_id)> SaleViewer(Context& context);

}  // namespace tpv
