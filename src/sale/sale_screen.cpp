#include "sale/sale_screen.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "cash/closing_screen.h"
#include "cash/mail_queue.h"
#include "cash/movements_screen.h"
#include "cash/opening_screen.h"
#include "context/kept_sale.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "data/till_state.h"
#include "output/sales_ticket.h"
#include "platform/database.h"
#include "sale/checkout_dialog.h"
#include "sale/returns_screen.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

void FrmTpv::OnLoad() {
  SaleEntry::OnLoad();
  keys_.Read(Database());
}

void FrmTpv::OnFirstActivate() {
  if (bSoloConsulta) Frame3.enabled = false;
  SendQueuedMailsOrTell(context(), Doubtful::Leave);
  OfferLeftSales();
}

bool FrmTpv::OnKeyDown(ui::Key key) {
  if (key == ui::Key::Add) {
    if (!sale_in_progress_ && cmdNueva.IsEnabled() && LeaveField()) StartOrCancel();
    return true;  // within a sale it does nothing, so it types nothing either
  }
  if (key == ui::Key::Subtract && sale_in_progress_ && cmdFinalizar.IsEnabled()) {
    if (!SettleWaitingLine()) return true;
    Text1[19].text.clear();
    if (LeaveField()) Finish();
    return true;
  }
  return false;
}

void FrmTpv::OnEscape() {
  if (cmdSalir.IsEnabled()) Exit();
}

void FrmTpv::LeaveTill() {
  const std::string& till = Text1[6].text;
  if (NumberOrZero(till) > 0) AskTill();
  OfferLeftSales();
}

bool FrmTpv::AskTill() {
  const bool open = SaleEntry::AskTill();
  cmdApertura.enabled = !open;
  cmdCierre.enabled = open;
  if (open) Text1[6].enabled = Text1[4].enabled = false;
  return open;
}

void FrmTpv::StartOrCancel() {
  if (sale_in_progress_) {
    Cancel();
  } else if (CanStart(!Text1[6].text.empty(), nullptr)) {
    Start();
  }
}

void FrmTpv::Start() {
  const std::int16_t till = Variant(Text1[6].text).ToInt16();
  if (!CreateHeader()) return;
  context().Caja = till;
  ShowSaleInProgress();
}

void FrmTpv::ShowSaleInProgress() {
  sale_in_progress_ = true;
  Frame2.enabled = true;
  OfferToCancel();
  Frame1.enabled = false;
  Text1[21].text = FormatNumber(1, "0.00");
  cmdGuardar.enabled = cmdCancelar.enabled = !Quick();
  cmdFinalizar.enabled = cmdBuscar.enabled = cmdAparcar.visible = true;
  cmdRecuperar.visible = false;
  finished_.reset();
  keys_.Read(Database());  // as the office has them by now
  SetFocus(Text1[19]);
  ShowReference(context().IdAlbaran);
}

void FrmTpv::PressKey(const std::string& code) {
  ui::TextBox* field = FieldForScan();
  if (field == nullptr) return;
  field->text = code;
  ArticleKey key;
  key.code = code;
  LookUpArticle(key);
}

void FrmTpv::ShowReference(std::int32_t sale_id) {
  const auto sale = Database().Execute("SELECT Cav_Serie,Cav_Numero FROM Cav WHERE Cav_Id = " +
                                       sql::Number(std::int64_t{sale_id}));
  Text1[9].text = sale->Eof() ? "" : sale->Field(0).TextOr("");
  Text1[11].text = sale->Eof() ? "" : std::to_string(sale->Field(1).IntOr(0));
}

void FrmTpv::Cancel() {
  if (CancelSaleInProgress()) EmptyAfterSale();
}

void FrmTpv::Finish() {
  if (!SettleWaitingLine()) return;
  if (dbgVenta.rows.empty()) {
    return Refuse("La venta no tiene líneas", &Text1[19], Icon::Exclamation);
  }
  FrmTpv1 checkout(context());
  Open(checkout);
  context().ports.ui.ShowModal(checkout);
  if (!checkout.Completed()) return void(AskTill());
  if (!checkout.Cancelled()) {
    const std::string series = Text1[9].text.empty() ? "" : Text1[9].text + "/";
    finished_ = {series + Text1[11].text, checkout.Invoice(), checkout.ReadPayment()};
  }
  EmptyAfterSale();
}

// Lists, totals and customer from one state of the store.
void FrmTpv::Open(FrmTpv1& checkout) {
  const Snapshot snapshot(Database());
  context().ports.ui.Load(checkout);
  checkout.Text1[2].text = Text1[2].text;
  checkout.Text1[5].text = Text1[5].text;
  checkout.msBuscarClientes(Int32OrZero(Text1[2].text), 0);
}

void FrmTpv::EmptyAfterSale() {
  ForgetSale();
  ShowOwnHead();
  Frame2.enabled = false;
  cmdNueva.enabled = cmdRecuperar.visible = true;
  cmdCancelar.enabled = cmdFinalizar.enabled = cmdBuscar.enabled = cmdAparcar.visible = false;
  Text1[9].text.clear();
  Text1[11].text.clear();
  Frame1.enabled = true;
  SetFocus(cmdNueva);
  const Snapshot snapshot(Database());
  ShowLinesAndTotals();
  ShowCounterCustomer();
}

void FrmTpv::ShowLinesAndTotals() {
  const Snapshot snapshot(Database());
  const auto lines = Database().Execute(
      "SELECT  Lav_Id, Lav_Idart , Lav_CodArt, Tiva_iva, Tiva_rec,  Lav_Des, Lav_Uni, "
      "dbo.FncPrecioConIva(lav_Id) as Precio, Lav_DTo1 , Lav_precio, "
      "dbo.FncImporteConIva(lav_Id) as Importe FROM Lav "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Lav_IdCav = " +
      sql::Number(std::int64_t{context().IdAlbaran}));
  using enum ui::Align;
  const ui::GridColumn hidden{"", "", 0, Left, true, false};
  const std::string units = MaskWithDecimals("###,##0.", UnitDecimals());
  const std::string price = MaskWithDecimals("#,###,##0.", PriceDecimals());
  dbgVenta.BindAgain(*lines,
                     {hidden, hidden, hidden, hidden, hidden,
                      {"Articulo", "", 6000, Left, false, true},
                      {"Unidades", units, 1200, Right, false, false},
                      {"Precio", price, 1200, Right, false, false},
                      {"%Dto", "", 900, Right, false, false},
                      hidden,
                      {"Importe", "#,###,##0.00", 1400, Right, false, false}},
                     "Lav_Id");
  ShowTotals();
}

void FrmTpv::ShowTotals() {
  const SaleTotals totals = ReadSaleTotals(Database(), context().IdAlbaran);
  Text1[10].text = FormatNumber(totals.base, "0.00");
  Text1[8].text = FormatNumber(totals.total, "0.00");
  Text1[3].text = FormatNumber(totals.tax(), "0.00");
}

void FrmTpv::msPintaVenta(std::int32_t id) {
  Frame1.enabled = Frame2.enabled = Frame4.enabled = false;
  for (ui::Button* button : {&cmdAbreCajon, &cmdCancelar, &cmdGuardar, &cmdNueva, &cmdFinalizar,
                             &cmdRecuperar}) {
    button->enabled = false;
  }
  dbgVenta.read_only = true;
  keys_.frame.visible = false;
  context().IdAlbaran = id;
  ShowLinesAndTotals();
  ShowReference(id);
  const auto sale = Database().Execute(
      "SELECT Cav_Fecha,Cav_NFiscal,Cav_Agente,Cav_Caja,(SELECT Age_Nom FROM Age WHERE Age_Id = "
      "Cav_Agente) AS Agente FROM Cav WHERE Cav_Id = " + sql::Number(std::int64_t{id}));
  if (sale->Eof()) return;
  const auto show = [&](int index, const char* field) {
    const Variant value = sale->Field(field);
    if (!value.IsNull()) Text1[index].text = value.ToText();
  };
  show(0, "Cav_Agente");
  show(1, "Agente");
  show(4, "Cav_Fecha");
  show(5, "Cav_NFiscal");
  Text1[2].text.clear();
  show(6, "Cav_Caja");
}

void ShowStoredSale(Context& context, std::int32_t sale_id, bool consult_only) {
  FrmTpv screen(context);
  context.ports.ui.Load(screen);
  screen.msPintaVenta(sale_id);
  screen.bSoloConsulta = consult_only;
  context.ports.ui.ShowModal(screen);
}

std::function<void(std::int32_t)> SaleViewer(Context& context) {
  return [&context](std::int32_t sale_id) { ShowStoredSale(context, sale_id); };
}

void FrmTpv::Reprint() {
  if (sale_in_progress_) return Refuse("Debe concluir la venta en curso", nullptr, Icon::Information);
  const auto last = Database().Execute(
      "Select max(Cav_ID) from Cav Where Cav_Ticket = 1 and Cav_Caja = " +
      sql::WholeNumber(Text1[6].text));
  if (last->Eof() || last->Field(0).IsNull()) return;
  if (IsUnfinished(last->Field(0).ToInt32())) return;
  context().IdAlbaran = last->Field(0).ToInt32();
  PrintSalesTicket(context(), TicketPaper::Reprint);
  context().IdAlbaran = 0;
}

bool FrmTpv::CanOpenTill() {
  const auto refuse = [this](const char* text, ui::Control* focus_back) {
    Refuse(text, focus_back);
    return false;
  };
  if (Text1[6].text.empty()) return refuse("No ha informado del numero de caja", &Text1[6]);
  if (context().IdAgente == 0) return refuse("No ha informado del vendedor", &Text1[0]);
  if (Check1.checked) return true;
  if (Text1[4].text.empty()) return refuse("No ha informado de la fecha de venta", &Text1[4]);
  return IsDate(Text1[4].text) || refuse("La fecha de venta no es correcta", &Text1[4]);
}

void FrmTpv::OpenTill() {
  if (!CanOpenTill()) return;
  if (AskTill()) return Refuse(kTillOpen, nullptr, Icon::Exclamation);
  const KeptSale kept(context());
  FrmTpvAperturaCaja opening(context());
  context().ports.ui.Load(opening);
  HandHead(opening);
  opening.ShowLastClosure();
  context().ports.ui.ShowModal(opening);
  AskTill();
}

// The date of a sale in progress need not be that of the till opened again under it.
void FrmTpv::HandHead(FrmTpvAperturaCaja& opening) {
  const std::pair<int, std::string> handed[] = {
      {13, Text1[6].text}, {11, Text1[0].text}, {12, Text1[1].text}, {5, SaleDate()}};
  for (const auto& [index, text] : handed) {
    opening.Text1[index].text = text;
    const bool free = index == 5 && sale_in_progress_;
    opening.Text1[index].locked = !free;
    opening.Text1[index].tab_stop = free;
  }
}

void FrmTpv::OpenReturns() {
  if (Text1[6].text.empty()) return Refuse("No ha informado del numero de caja", &Text1[6]);
  if (!AskTill()) return Refuse(kTillClosed, &Text1[6]);
  if (context().IdAgente == 0) return Refuse("No ha informado del vendedor", &Text1[0]);
  const KeptSale kept(context());
  FrmTpvDevoluciones returns(context());
  context().ports.ui.Load(returns);
  for (const int index : {6, 0, 1}) returns.Text1[index].text = Text1[index].text;
  context().ports.ui.ShowModal(returns);
}

void FrmTpv::CloseTill() {
  if (sale_in_progress_) return Refuse("Debe concluir la venta en curso", nullptr, Icon::Exclamation);
  if (!AskTill()) return Refuse(kTillClosed, nullptr, Icon::Exclamation);
  const KeptSale kept(context());
  FrmTpvCierreCaja screen(context());
  context().ports.ui.ShowModal(screen);
  AskTill();
}

void FrmTpv::MoveCash() {
  if (!AskTill()) {
    return Refuse("Proceso no disponible con la caja cerrada", nullptr, Icon::Critical);
  }
  const KeptSale kept(context());
  FrmTpvMovCaja movements(context());
  context().ports.ui.Load(movements);
  movements.Text1[20].text = Text1[6].text;
  movements.bCompleto = true;
  context().ports.ui.ShowModal(movements);
}

void FrmTpv::Exit() {
  if (sale_in_progress_) return Refuse("Debe concluir la venta en curso", nullptr, Icon::Exclamation);
  Close();
}

}  // namespace tpv
