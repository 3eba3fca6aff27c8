#include "cash/opening_screen.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "cash/balance_fields.h"
#include "data/sql_text.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "screen/declared_fields.h"
#include "screen/lookups.h"

namespace tpv {

using ui::Icon;

FrmTpvAperturaCaja::FrmTpvAperturaCaja(Context& ctx) : Screen(ctx, "frmTpvAperturaCaja") {
  caption = "Punto de venta rapido. Abrir caja";
  DeclareFields();
  fraAgente.Rows({{&Text1[5], &Text1[13], &Text1[11], &Text1[12], &Text1[14]}});
  rows = {{&fraAgente}, {&Frame1}, {&cmdGrabar, &cmdSalir}};
  cmdGrabar.emphasis = ui::Emphasis::Strong;
  cmdGrabar.click = [this] { Save(); };
  cmdSalir.click = [this] { Close(); };
  Text1[11].left = [this] { LeaveAgent(); };
  Text1[13].left = [this] {
    if (Text1[13].text.empty()) return;
    ShowLastClosure();
    SetFocus(Text1[14]);
  };
}

void FrmTpvAperturaCaja::DeclareFields() {
  using enum ui::Input;
  const DeclaredField fields[] = {
      {5, "Fecha apertura", 12, 10, Date, false}, {13, "Nº Caja", 6, 5, Number, false},
      {11, "Vendedor", 8, 9, Number, false},      {12, "", 30, 0, Any, true},
      {14, "Saldo inicial de caja", 14, 12, Number, false},
  };
  tpv::DeclareFields(Text1, fields);
  Text1[14].align = ui::Align::Right;
  Text1[14].large = true;
  Text1[12].stretch = true;
  AddBalanceFields(Text1, Frame1, "Fecha Cierre");
}

void FrmTpvAperturaCaja::OnLoad() {
  Screen::OnLoad();
  Text1[13].text = Parameter("Par_NumCaja").TextOr("");
}

void FrmTpvAperturaCaja::msValoresiniciales() {
  for (auto& [index, box] : Text1) box->text.clear();
}

void FrmTpvAperturaCaja::LeaveAgent() {
  if (Text1[11].text.empty()) return;
  LookUpAgent(context(), toolkit(), Int32OrZero(Text1[11].text), Text1[11], Text1[12]);
}

void FrmTpvAperturaCaja::ShowRounded(int index, double euros) {
  Text1[index].text = FormatNumber(toolkit().Redondear(euros, 2), "0.00");
}

// What was proposed for another till goes when this one's cannot be read.
std::unique_ptr<Recordset> FrmTpvAperturaCaja::LastClosure() {
  try {
    return Database().Execute(
        "SELECT *, (SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) AS Agente FROM DiaCaj "
        "WHERE DiaCaj_Tipo = 9 AND DiaCaj_Caja = " +
        sql::WholeNumber(Text1[13].text) + "ORDER BY DiaCaj_Fecha DESC");
  } catch (const DatabaseError&) {
    for (const int index : {9, 10, 3, 6, 7, 1, 2, 4, 8, 14}) Text1[index].text.clear();
    throw;
  }
}

void FrmTpvAperturaCaja::ShowLastClosure() {
  const auto closure = LastClosure();
  if (closure->Eof()) return;
  Text1[9].text = Format(closure->Field("DiaCaj_Fecha"), "DD/MM/YYYY HH:MM");
  Text1[10].text = closure->Field("Agente").TextOr("");
  Text1[3].text = FormatNumber(closure->Field("DiaCaj_SaldoIni").NumberOr(0), "#,###,##0.00");
  ShowRounded(6, closure->Field("DiaCaj_CobMet").NumberOr(0));
  ShowRounded(7, closure->Field("DiaCaj_CobTar").NumberOr(0));
  ShowRounded(1, closure->Field("DiaCaj_Pagos").NumberOr(0));
  ShowRounded(2, Number(Text1[3]) + Number(Text1[6]) - Number(Text1[1]));
  ShowRounded(4, closure->Field("DiaCaj_Ret").NumberOr(0));
  ShowRounded(8, Number(Text1[2]) - Number(Text1[4]));
  Text1[14].text = Text1[8].text;
}

bool FrmTpvAperturaCaja::Check() {
  const auto refuse = [this](const char* text, int focus_back) {
    Refuse(text, &Text1[focus_back], Icon::Information);
    return false;
  };
  if (Number(Text1[13]) == 0) return refuse("No ha indicado el número de caja", 5);
  if (!TillNumber(Text1[13].text)) return refuse("El número de caja no es valido", 13);
  if (!Text1[5].text.empty() && !IsDate(Text1[5].text)) {
    return refuse("La fecha indicada no es valida", 5);
  }
  if (Text1[11].text.empty() || context().IdAgente == 0) {
    return refuse("No ha indicado el vendedor", 11);
  }
  if (Text1[14].text.empty()) return refuse("No ha indicado el importe inicial de la caja", 14);
  if (!ParseNumber(Text1[14].text) || Number(Text1[14]) <= 0) {
    return refuse("El mporte inicial de la caja no es valido", 14);
  }
  return true;
}

TillOpening FrmTpvAperturaCaja::Entered() const {
  return {TillNumber(Text1[13].text).value_or(0), Text1[5].text, Number(Text1[14])};
}

// The till's journal has the last word, before the question and when it is stored.
bool FrmTpvAperturaCaja::Try(const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const TillRefusal& refusal) {
    const bool date = refusal.about() == TillRefusal::About::Date;
    Refuse(refusal.what(), date ? &Text1[5] : &Text1[13], Icon::Exclamation);
  } catch (const std::exception& error) {
    Refuse("No se ha podido grabar la apertura de la caja. " + std::string(kLineBreak) + error.what(),
           nullptr, Icon::Critical);
  }
  return false;
}

void FrmTpvAperturaCaja::Save() {
  if (!Check()) return;
  if (!Try([this] { RequireDay(context(), Entered()); })) return;
  if (!Confirm("Confirma la apertura de la caja", Icon::Question)) return;
  if (Try([this] { StoreOpening(context(), Entered()); })) Close();
}

}  // namespace tpv
