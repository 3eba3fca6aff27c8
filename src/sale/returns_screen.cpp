#include "sale/returns_screen.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "data/sql_text.h"
#include "fiscal/chain.h"
#include "output/cash_drawer.h"
#include "platform/database.h"
#include "sale/sale_storage.h"

namespace tpv {

FrmTpvDevoluciones::FrmTpvDevoluciones(Context& ctx) : SaleEntry(ctx, "frmTpvDevoluciones") {
  caption = "Gestión de devoluciones";
  DeclareFields();
  DeclareLayout();
  Connect();
}

void FrmTpvDevoluciones::DeclareFields() {
  using enum ui::Input;
  const DeclaredField own[] = {
      {12, "Serie/Num.Ticket", 6, 0, Any, true},
      {13, "", 9, 0, Any, true},
      {9, "Serie", 6, 5, Any, false},
      {11, "Numero", 9, 9, Number, false},
  };
  DeclareCommonFields(own);
  Text1[5].stretch = Text1[8].stretch = Text1[18].stretch = ListView1.stretch = true;
}

void FrmTpvDevoluciones::DeclareLayout() {
  using enum ui::Align;
  ListView1.check_boxes = true;
  ListView1.layout = {{"Articulo", "", 6000, Left, false, false},
                      {"Unidades", "", 1200, Right, false, false},
                      {"Precio", "", 1200, Right, false, false},
                      {"%Dto", "", 900, Right, false, false},
                      {"Importe", "", 1400, Right, false, false}};
  Frame1.Rows({{&Text1[6], &Text1[0], &Text1[1], &Text1[12], &Text1[13]},
               {&Text1[2], &Text1[5], &cboFpago, &Check1, &Text1[4]}});
  Frame2.Rows({{&Text1[9], &Text1[11], &cmdBuscar, &cmdBuscarVentas}});
  Frame3.Rows({{&Text1[21], &Text1[19], &Text1[18], &Text1[17], &Text1[7], &cmdCancelar}});
  ShowMeaning(false);
  Frame4.Rows({{&Text1[10], &Text1[3], &Text1[8], &cmdFinalizar}});
  cmdFinalizar.emphasis = ui::Emphasis::Strong;
  lblSentido.stretch = true;
  warning = true;
  cmdNueva.heading = "DEVOLUCIÓN";
  rows = {{&Frame1},
          {&Frame2, &lblSentido},
          {&Frame3},
          {&ListView1},
          {&Frame4, &cmdNueva, &cmdAbreCajon, &cmdSalir}};
  Frame3.enabled = false;
}

void FrmTpvDevoluciones::Connect() {
  Text1[6].left = [this] { LeaveTill(); };
  cmdNueva.click = [this] { StartOrCancel(); };
  cmdCancelar.click = [this] { Drop(); };
  cmdBuscar.click = cmdBuscarVentas.click = [this] { FindSale(); };
  cmdFinalizar.click = [this] { TakeCheckedLines(); };
  cmdAbreCajon.click = [this] { OpenDrawer(context()); };
  cmdSalir.click = [this] { Leave(); };
}

char32_t FrmTpvDevoluciones::OnCharacter(ui::TextBox& box, char32_t character) {
  if (&box == &Text1[21] && character == U'-') return character;
  return SaleEntry::OnCharacter(box, character);
}

// Enter on the last field of a line stores it.
void FrmTpvDevoluciones::OnKeyUp(ui::Key key) {
  const bool ends_line = key == ui::Key::Enter && focus == &Text1[7] && pending_message.empty();
  if (!ends_line) return Screen::OnKeyUp(key);
  AcceptLine();
}

void FrmTpvDevoluciones::OnF1(std::string_view tag) {
  SaleEntry::OnF1(tag);
  if (tag != "Clientes") return;
  pending_message = "e";
  std::int32_t code = -1;
  std::int32_t id = 0;
  msBuscarClientes(code, id);
}

std::optional<Article> FrmTpvDevoluciones::Find(const ArticleKey& key, std::int32_t customer_id) {
  return FindArticle(context(), key, customer_id, false);
}

std::optional<Tax> FrmTpvDevoluciones::TaxOf(const Article& article) {
  return FindNewestTax(context(), article.tax_class);
}

void FrmTpvDevoluciones::LeaveTill() {
  if (Text1[6].text.empty()) return;
  if (AskTill()) {
    Text1[6].enabled = false;
  } else {
    Refuse("Caja cerrada debe apertura para poder trabajar", nullptr);
  }
}

void FrmTpvDevoluciones::StartOrCancel() {
  if (sale_in_progress_) {
    if (!CancelSaleInProgress()) return;
    ShowOpenTicket(false);
    ShowCounterCustomer();
  } else if (CanStart(NumberOrZero(Text1[6].text) != 0, &Text1[6])) {
    Start();
  }
}

void FrmTpvDevoluciones::Start() {
  if (CreateHeader()) ShowReturnInProgress();
}

void FrmTpvDevoluciones::GoOn(std::int32_t sale_id) {
  context().IdAlbaran = sale_id;
  ShowHeadOfSale();
  ShowReturnInProgress();
}

void FrmTpvDevoluciones::ShowReturnInProgress() {
  originals_.clear();
  sale_in_progress_ = true;
  OfferToCancel();
  EmptyLine();
  ShowOpenTicket(true);
  SetFocus(Text1[19]);
}

// An open ticket stays as a pending one.
void FrmTpvDevoluciones::Leave() {
  try {
    if (sale_in_progress_) LeaveSalePending(context(), originals_);
  } catch (const fiscal::RecordRefused& refused) {
    return Refuse(refused.what(), nullptr, ui::Icon::Critical);
  }
  Close();
}

// The header of an open ticket is written: its customer and date stay.
void FrmTpvDevoluciones::ShowOpenTicket(bool open) {
  Frame1.enabled = !open;
  Frame3.enabled = open;
  ShowLinesAndTotals();
}

void FrmTpvDevoluciones::ShowLinesAndTotals() {
  const Snapshot snapshot(Database());
  listed_sale_ = 0;
  ShowLines(context().IdAlbaran, true);
  ShowTotals();
}

void FrmTpvDevoluciones::ShowLines(std::int32_t sale_id, bool checked) {
  const std::string units = MaskWithDecimals("###,##0.", UnitDecimals());
  const std::string price = MaskWithDecimals("###,##0.", PriceDecimals());
  constexpr const char* kAmount = "###,##0.00";
  const auto lines = Database().Execute(
      "SELECT  Lav_Id, Lav_Idart , Lav_CodArt, Tiva_iva, Tiva_rec,  Lav_Des, Lav_Uni, "
      "ROUND(cast(lav_Precio + (lav_Precio /100 * Tiva_iva) as money),2) as Precio, "
      "Lav_DTo1 , Lav_precio, "
      "ROUND(cast(lav_Importe + (lav_Importe /100 * Tiva_iva) as money),2) as Importe "
      "FROM Lav INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Lav_IdCav = " +
      sql::Number(std::int64_t{sale_id}));
  const auto keys = [this] {
    std::vector<std::int32_t> found;
    for (const ui::ListItem& item : ListView1.items) found.push_back(item.tag);
    return found;
  };
  const std::vector<std::int32_t> before = keys();
  ListView1.items.clear();
  bool any_sold = false;
  for (; !lines->Eof(); lines->MoveNext()) {
    any_sold |= lines->Field("Lav_Uni").NumberOr(0) > 0;
    ListView1.items.push_back({{lines->Field("Lav_Des").TextOr(""),
                                Format(lines->Field("Lav_Uni"), units),
                                Format(lines->Field("Precio"), price),
                                Format(lines->Field("Lav_DTo1"), kAmount),
                                Format(lines->Field("Importe"), kAmount)},
                               checked,
                               lines->Field("Lav_Id").ToInt32()});
  }
  ListView1.current_row = ui::PlaceAmong(before, ListView1.current_row, keys());
  ShowMeaning(any_sold && sale_id == context().IdAlbaran);
}

void FrmTpvDevoluciones::ShowMeaning(bool any_sold) {
  lblSentido.caption = any_sold
      ? "Atención: las líneas con unidades positivas son una VENTA. Lo devuelto lleva el signo menos"
      : "Para devolver, escriba las unidades con el signo menos: -1. En positivo son una venta";
}

void FrmTpvDevoluciones::ShowTotals() {
  const auto sums = Database().Execute(
      "SELECT ROUND(cast(SUM(lav_Importe) as money),2) as BASE, "
      "ROUND(cast(sum((lav_Importe /100 * Tiva_iva)) as money),2) as impuestos, "
      "ROUND(cast(sum(lav_Importe + (lav_Importe /100 * Tiva_iva)) as money),2) as total "
      "From Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Id = " +
      sql::Number(std::int64_t{context().IdAlbaran}));
  const std::pair<int, const char*> totals[] = {{10, "BASE"}, {3, "impuestos"}, {8, "total"}};
  for (const auto& [index, field] : totals) {
    Text1[index].text = FormatNumber(sums->Eof() ? 0 : sums->Field(field).NumberOr(0), "0.00");
  }
}

}  // namespace tpv
