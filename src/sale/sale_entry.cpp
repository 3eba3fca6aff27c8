#include "sale/sale_entry.h"

#include "base/number_text.h"
#include "base/text.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "data/till_clock.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "sale/payment_methods.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Icon;

namespace {

constexpr const char* kSaleAfterToday = "La fecha de venta es posterior a hoy";

}  // namespace

SaleEntry::SaleEntry(Context& ctx, std::string form_name) : Screen(ctx, std::move(form_name)) {}

void SaleEntry::DeclareCommonFields(std::span<const DeclaredField> own) {
  using enum ui::Input;
  const DeclaredField head[] = {
      {6, "Nº Caja", 6, 5, Number, false},
      {0, "Vendedor (F1 busqueda alfabetica)", 8, 9, Number, false},
      {1, "", 30, 0, Any, true},
      {2, "Cliente", 8, 9, Number, false},
      {5, "", 40, 0, Any, true},
      {4, "Fecha", 12, 10, Date, false},
  };
  const DeclaredField line_and_totals[] = {
      {21, "Unidades", 9, 12, Number, false},
      {19, "Articulo (F1 Busqueda albafetica)", 18, 20, Any, false},
      {18, "Descripción", 40, 100, Any, false},
      {17, "Precio", 11, 12, Number, false},
      {7, "% Dto", 7, 7, Number, false},
      {10, "Base Imponible", 12, 0, Any, true},
      {3, "Impuestos", 12, 0, Any, true},
      {8, "Total", 12, 0, Any, true},
  };
  DeclareFields(Text1, head);
  DeclareFields(Text1, own);
  DeclareFields(Text1, line_and_totals);
  for (auto& [index, box] : Text1) {
    if (box->input == Number) box->align = ui::Align::Right;
  }
  for (const int index : {10, 3, 8}) Text1[index].align = ui::Align::Right;
  Text1[8].emphasis = ui::Emphasis::Strong;
  OfferNewSale();
  Text1[0].left = [this] { LeaveAgent(); };
  Text1[2].left = [this] { LeaveCustomer(); };
  Text1[17].left = [this] { ReformatNumber(17, PriceDecimals()); };
  Text1[21].left = [this] { ReformatNumber(21, UnitDecimals()); };
  Text1[19].left = [this] { LeaveArticle(); };
}

void SaleEntry::OnLoad() {
  Screen::OnLoad();
  caption = "Punto de venta rapido: " + std::string(kVersion);
  cboFpago.items = PaymentMethods(context());
  if (Parameter("Par_SerTicFac").IsNull()) {
    Refuse(
        "Para poder facturar tickets debe informar de la serie de facturas para tickets en "
        "parametros",
        nullptr);
  }
  Text1[0].tag = "Agentes";
  Text1[2].tag = "Clientes";
  Text1[19].tag = "Articulos";
  if (context().IdAgente != 0) ShowAgent(context().IdAgente);
  ShowCounterCustomer();
  if (Parameter("Par_Alma").IsNull()) {
    Message("No se ha definido en parámetros el almacen para Gestión de venta rápida. " +
                std::string(kLineBreak) +
                "ATENCION: NO SE DECONTARAN EXISTENCIAS DE NINGUN ALMACEN",
            Icon::Critical);
  }
  Text1[6].text = Parameter("Par_NumCaja").TextOr("");
  context().IdAlbaran = -1;
  ShowLinesAndTotals();
}

void SaleEntry::OnF1(std::string_view tag) {
  if (tag == "Clientes") return;  // opens nothing
  if (tag != "Agentes" && tag != "Articulos") return ShowManual();
  pending_message = "e";
  tag == "Agentes" ? ShowAgent(0) : LookUpArticle({});
}

void SaleEntry::OnEnter(ui::Control& control) {
  if (&control == &Text1[2]) Text1[2].text = ReplaceAll(Text1[2].text, "/", "");
  Screen::OnEnter(control);
}

void SaleEntry::msBuscarClientes(std::int32_t& code, std::int32_t& id) {
  auto found = FindCustomer(context(), toolkit(), code, id, OfferedCustomers());
  if (!found) return;
  customer_ = std::move(found);
  context().IdCliente = customer_->Id();
  Text1[2].text = std::to_string(customer_->Code());
  Text1[5].text = customer_->Name();
  SelectPaymentMethod(cboFpago, (*customer_)["Cli_Fco"].IntOr(0));
}

void SaleEntry::ShowAgent(std::int32_t id) {
  LookUpAgent(context(), toolkit(), id, Text1[0], Text1[1]);
}

void SaleEntry::LeaveAgent() {
  if (!Text1[0].text.empty()) return ShowAgent(Int32OrZero(Text1[0].text));
  context().IdAgente = 0;  // taken out
  Text1[1].text.clear();
}

void SaleEntry::ShowCounterCustomer() {
  std::int32_t code = Parameter("Par_CliCon").IntOr(0);
  std::int32_t id = 0;
  if (code != 0) msBuscarClientes(code, id);
}

void SaleEntry::ShowCustomer(std::int32_t id) {
  ForgetCustomer();
  std::int32_t any_code = 0;
  if (id != 0) msBuscarClientes(any_code, id);
  if (!customer_) ShowCounterCustomer();
}

void SaleEntry::ShowHeadOfSale() {
  const auto sale = Database().Execute("SELECT Cav_IdCli, Cav_Agente, Cav_Fecha FROM Cav WHERE Cav_Id = " +
                                       sql::Number(std::int64_t{context().IdAlbaran}));
  const std::int32_t agent = sale->Field("Cav_Agente").IntOr(0);
  if (agent != 0) ShowAgent(agent);
  ShowCustomer(sale->Field("Cav_IdCli").IntOr(0));
  const DateTime date = sale->Field("Cav_Fecha").ToDate();
  AskTill();
  Check1.checked = StartOfDay(date) == StartOfDay(TillClock(Database(), context().Caja).now());
  Text1[4].text = Check1.checked ? std::string() : ToDayFirst(date);
}

// What was sold to one customer has no say in the next sale, also when the store
// cannot be asked for the counter's.
void SaleEntry::ForgetCustomer() {
  customer_.reset();
  context().IdCliente = 0;
  Text1[2].text.clear();
  Text1[5].text.clear();
  SelectPaymentMethod(cboFpago, 0);
}

void SaleEntry::LeaveCustomer() {
  const std::string& text = Text1[2].text;
  const bool unchanged = customer_ && text == std::to_string(customer_->Code());
  if (text.empty() || unchanged) return;
  std::int32_t code = ParseInt32(text).value_or(-2);
  std::int32_t id = 0;
  msBuscarClientes(code, id);
  if (customer_ && code == customer_->Code()) return;
  Refuse("Codigo de cliente no existe", &Text1[2]);
}

bool SaleEntry::Warn(const std::string& text, ui::Control* focus_back) {
  Refuse(text, focus_back, Icon::Exclamation, "Atención");
  return false;
}

bool SaleEntry::CanStart(bool till_named, ui::Control* when_closed) {
  if (!till_named) return Warn("No ha informado del numero de caja", &Text1[6]);
  if (!AskTill()) return Warn(kTillClosed, when_closed);
  if (context().IdAgente == 0) return Warn("No ha informado del vendedor", &Text1[0]);
  if (context().IdCliente == 0 || !customer_) {
    return Warn("No ha informado del cliente", &Text1[2]);
  }
  if (IsRetired(context(), "Age", context().IdAgente)) return Warn("El vendedor está retirado", &Text1[0]);
  if (OfferedCustomers() == Offered::InUse && IsRetired(context(), "Cli", customer_->Id())) {
    return Warn("El cliente está retirado", &Text1[2]);
  }
  return CheckDate();
}

// Goods brought back were sold to whoever it was.
Offered SaleEntry::OfferedCustomers() const { return TakesGoodsBack() ? Offered::Everybody : Offered::InUse; }

bool SaleEntry::AskTill() { return till_open_ = TillIsOpen(Database(), Text1[6].text); }

bool SaleEntry::CheckDate() {
  const std::string& typed = Text1[4].text;
  if (!Check1.checked && typed.empty()) return Warn("No ha informado de la fecha de venta", &Text1[4]);
  if (!Check1.checked && !IsDate(typed)) return Warn("La fecha de venta no es correcta", &Text1[4]);
  try {
    const TillClock clock(Database(), Int32OrZero(Text1[6].text));
    clock.RequireNoFuture();
    if (!Check1.checked) clock.RequireNotAfterToday(Variant(typed).ToDate(), kSaleAfterToday);
    return true;
  } catch (const TillRefusal& refusal) {
    return Warn(refusal.what(), &Text1[Check1.checked ? 6 : 4]);
  }
}

bool SaleEntry::CreateHeader() {
  try {
    CreateSaleHeader(context(), *customer_, Text1[6].text, SaleDate());
    return true;
  } catch (const TillRefusal& refusal) {
    AskTill();
    return Warn(refusal.what(), nullptr);
  }
}

bool SaleEntry::CancelSaleInProgress() {
  if (!Confirm("Confirma que desea cancelar la venta en curso", Icon::Critical,
               ui::Answer::No)) {
    return false;
  }
  try {
    GiveUpSale(context());
  } catch (const SaleTaken& taken) {
    Refuse(taken.what(), nullptr, Icon::Critical);
    LeaveSalePending(context());
  }
  ForgetSale();
  return true;
}

void SaleEntry::ForgetSale() {
  EmptyLine();
  context().IdAlbaran = -1;
  sale_in_progress_ = false;
  ForgetCustomer();
  OfferNewSale();
}

void SaleEntry::OfferNewSale() {
  cmdNueva.caption = "&Nueva Venta";
  cmdNueva.emphasis = ui::Emphasis::Strong;
}

void SaleEntry::OfferToCancel() {
  cmdNueva.caption = "&Cancelar Venta";
  cmdNueva.emphasis = ui::Emphasis::Warning;
}

}  // namespace tpv
