// Goods brought back: keyed as a ticket of its own, or taken line by line from
// the ticket that sold them. The refund is paid out through cash movements.
#pragma once

#include "sale/sale_entry.h"

namespace tpv {

class FrmTpvDevoluciones : public SaleEntry {
 public:
  explicit FrmTpvDevoluciones(Context& ctx);

  // Goes on with a return that was taken up. The screen must be loaded.
  void GoOn(std::int32_t sale_id);

  void OnKeyUp(ui::Key key) override;
  // Units may be typed with their sign.
  char32_t OnCharacter(ui::TextBox& box, char32_t character) override;
  void OnCloseBox() override { Leave(); }
  std::vector<ui::StatusItem> Status() const override;

 protected:
  void OnEscape() override {}
  void OnF1(std::string_view tag) override;
  void ShowLinesAndTotals() override;
  bool TakesGoodsBack() const override { return true; }
  void StartOrCancel() override;
  std::optional<Article> Find(const ArticleKey& key, std::int32_t customer_id) override;
  std::optional<Tax> TaxOf(const Article& article) override;

 private:
  void DeclareFields();
  void DeclareLayout();
  void Connect();

  void LeaveTill();
  void Start();
  void ShowReturnInProgress();
  void Leave();
  void ShowOpenTicket(bool open);
  void ShowLines(std::int32_t sale_id, bool checked);
  void ShowTotals();
  void ShowMeaning(bool any_sold);

  // lines of a past sale
  void FindSale();
  void TakeCheckedLines();
  void StoreReturned(std::int32_t line_id);

  ui::ListView ListView1{*this, "ListView1"};
  ui::Label lblSentido{*this, "lblSentido"};             // what the units' sign means
  ui::Frame Frame1{*this, "Frame1"};                     // head
  ui::Frame Frame2{*this, "Frame2", "Venta que se devuelve"};
  ui::Frame Frame3{*this, "Frame3"};                     // line
  ui::Frame Frame4{*this, "Frame4", "Importes Totales"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar"};
  ui::Button cmdBuscarVentas{*this, "cmdBuscarVentas", "Buscar &ventas"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "Cancelar &línea"};
  ui::Button cmdFinalizar{*this, "cmdFinalizar", "&Finalizar: devolver lo marcado"};
  ui::Button cmdAbreCajon{*this, "cmdAbreCajon", "A&brir cajón"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};
  std::int32_t listed_sale_ = 0;  // the past sale in the list; 0: the open ticket
  std::vector<std::int32_t> originals_;  // past sales that lines were taken from
};

}  // namespace tpv
