// The till operator's main screen: start a sale, enter articles, see lines and
// totals, finish or cancel; and from here the till's other operations.
#pragma once

#include <optional>

#include "sale/article_lookup.h"
#include "sale/sale_storage.h"
#include "screen/lookups.h"
#include "screen/screen.h"

namespace tpv {

class FrmTpv : public Screen {
 public:
  explicit FrmTpv(Context& context);

  // Shows the stored sale `id`, read-only. The screen must be loaded.
  void msPintaVenta(std::int32_t id);
  // Looks a customer up by code or id, or with -1 and 0 through the search
  // dialog; `id` receives the choice.
  void msBuscarClientes(std::int32_t& code, std::int32_t& id);

  // Set before showing: the till's operations are disabled at first activation.
  bool bSoloConsulta = false;

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnFirstActivate() override;
  bool OnKeyDown(ui::Key key) override;
  void OnEnter(ui::Control& control) override;
  void OnCloseBox() override { Exit(); }

 protected:
  void OnEscape() override;
  void OnF1(std::string_view tag) override;

 private:
  // layout
  void DeclareFields();
  void DeclareLayout();
  void ConnectFields();
  void ConnectButtons();

  // head of the sale
  void FillPaymentMethods();
  void ShowAgent(std::int32_t id);
  void LeaveAgent();
  void LeaveCustomer();
  void LeaveTill();
  void MarkTillOpen();
  bool CanStart();
  bool CanOpenTill();
  bool Warn(const std::string& text, ui::Control* focus_back);

  // the sale
  void StartOrCancel();
  void Start();
  void Cancel();
  void Finish();
  void EmptyAfterSale();
  void ShowLinesAndTotals();
  void ShowTotals();

  // the line being entered
  void LeaveArticle();
  void LookUpArticle(ArticleKey key);
  void TakeArticle(const Article& article);
  void RefuseArticle(const std::string& text);
  void ReformatNumber(int index, int decimals);
  void Accept();
  void Drop();
  void EndLine();
  void EditLine(int row, int column);
  bool CheckLine();
  bool StoreEnteredLine();
  void EmptyLine();
  bool Quick() const { return Parameter("Par_Rapida").IsNull() ? false : Parameter("Par_Rapida").ToBool(); }
  int PriceDecimals() const { return Parameter("par_decpre").IntOr(0); }
  int UnitDecimals() const { return Parameter("par_deccan").IntOr(0); }

  // the till's operations
  void Reprint();
  void OpenTill();
  void Exit();

  ui::CheckBox Check1{*this, "Check1", "Fecha sistema", true};
  ui::ComboBox cboFpago{*this, "cboFpago", "Forma de pago"};
  ui::Grid dbgVenta{*this, "dbgVenta"};
  ui::Frame Frame1{*this, "Frame1"};                       // head
  ui::Frame Frame2{*this, "Frame2"};                       // line
  ui::Frame Frame3{*this, "Frame3"};                       // till operations
  ui::Frame Frame4{*this, "Frame4", "Importes Totales"};
  ui::Button cmdNueva{*this, "cmdNueva", "&Nueva Venta"};
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
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};

  std::optional<CustomerRecord> customer_;
  bool sale_in_progress_ = false;
  bool till_open_ = false;
  std::int32_t edited_line_ = 0;
  std::int32_t article_id_ = 0;
  std::string looked_up_code_;  // of the article in the line fields
  Tax tax_;
};

// Opens a sale screen on a stored sale, read-only, and waits until it is closed.
// `consult_only` disables the till's operations too.
void ShowStoredSale(Context& context, std::int32_t sale_id, bool consult_only = false);

}  // namespace tpv
