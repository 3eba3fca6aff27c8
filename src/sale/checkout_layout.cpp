#include "base/mask.h"
#include "data/statements.h"
#include "platform/database.h"
#include "sale/checkout_dialog.h"
#include "sale/payment_methods.h"

namespace tpv {

namespace {

constexpr ChoiceList kStreetTypes{"Select * from ZRCOMUN.dbo.TVI", "TVI_COD", "TVI_NOM"};
constexpr ChoiceList kCountries{"Select * from ZRCOMUN.dbo.PAIS", "PAIS_COD", "PAIS_NOM"};
constexpr ChoiceList kProvinces{"Select * from ZRCOMUN.dbo.PROV", "PROV_COD", "PROV_NOM", "00"};

}  // namespace

FrmTpv1::FrmTpv1(Context& ctx) : Screen(ctx, "frmTpv1") {
  caption = "Punto de venta rapido. Finalizar venta ";
  DeclareFields();
  DeclareLayout();
  Connect();
}

void FrmTpv1::DeclareFields() {
  struct Field {
    int index;
    const char* caption;
    int max_length;
    ui::Input input;
    bool shown_only;
  };
  using enum ui::Input;
  const Field fields[] = {
      {6, "Cobro en metalico", 10, Number, false},
      {0, "(F5) Cobro con Tarjeta", 10, Number, false},
      {7, "Devolucion", 10, Number, false},
      {10, "Base Imponible", 0, Any, true},
      {3, "Impuestos", 0, Any, true},
      {8, "Total", 0, Any, true},
      {2, "Cliente (F1Busqueda albafetica)", 6, Number, false},
      {5, "", 50, Any, false},
      {24, "Documento", 20, Any, false},
      {15, "Saldo", 0, Any, true},
      {14, "Nombre de la Via", 50, Any, false},
      {4, "Numero", 3, Number, false},
      {9, "Esc", 2, Any, false},
      {1, "Piso", 2, Any, false},
      {11, "Puerta", 2, Any, false},
      {12, "C.P.", 5, Any, false},
      {13, "Poblacion", 50, Any, false},
  };
  for (const Field& field : fields) {
    ui::TextBox& box = Text1.Add(field.index, field.caption);
    box.max_length = field.max_length;
    box.columns = field.max_length > 0 ? field.max_length : 12;
    box.input = field.input;
    box.locked = field.shown_only;
    box.tab_stop = !field.shown_only;
    if (field.shown_only || field.input == Number) box.align = ui::Align::Right;
  }
  Text1[8].large = Text1[7].large = Text1[6].large = true;
  for (const int index : {5, 14, 13, 6, 7, 8}) Text1[index].stretch = true;
}

void FrmTpv1::DeclareLayout() {
  Frame1.Rows({{&Text1[6], &Text1[0], &Text1[7]}});
  Frame2.Rows({{&Text1[10], &Text1[3], &Text1[8]}});
  Frame3.Rows({{&Text1[2], &Text1[5], &Text1[24]},
               {&cboFpago, &Text1[15], &cmdPendiente, &cmdNuevoCli},
               {&cboTipoVia, &Text1[14], &Text1[4], &Text1[9], &Text1[1], &Text1[11]},
               {&Text1[12], &Text1[13], &cboProvincias, &cboPais}});
  cmdTicket.emphasis = ui::Emphasis::Strong;
  cmdCancelar.emphasis = ui::Emphasis::Warning;
  rows = {{&Frame1, &Frame2}, {&cmdTicket, &cmdFinalizar, &cmdFactura, &cmdCancelar}, {&Frame3}};
}

void FrmTpv1::Connect() {
  for (const int index : {0, 6}) {
    Text1[index].left = [this, index] { LeaveAmount(Text1[index]); };
  }
  Text1[2].left = [this] { LeaveCustomer(); };
  cmdTicket.click = [this] { End(Ending::Ticket); };
  cmdFinalizar.click = [this] { End(Ending::NoTicket); };
  cmdFactura.click = [this] { EndWithInvoice(); };
  cmdCancelar.click = [this] { CancelTheSale(); };
  cmdPendiente.click = [this] { ShowPending(); };
  cmdNuevoCli.click = [this] { NewCustomer(); };
}

void FrmTpv1::OnLoad() {
  Screen::OnLoad();
  const Snapshot snapshot(Database());
  Text1[2].tag = "Clientes";
  EnableCommands();
  FillLists();
  LoadTotals();
}

void FrmTpv1::EnableCommands() {
  enum Documents { kTicketOnly = 0, kInvoiceOnly = 1, kBoth = 2 };
  const std::int32_t documents = Parameter("Par_Impre").IntOr(kTicketOnly);
  cmdTicket.enabled = documents != kInvoiceOnly;
  cmdFactura.enabled = (documents == kInvoiceOnly || documents == kBoth) &&
                       !Parameter("Par_SerTicFac").IsNull();
}

void FrmTpv1::FillLists() {
  cboTipoVia.Offer(context().choices.Entries(Database(), kStreetTypes));
  cboPais.Offer(context().choices.Entries(Database(), kCountries));
  cboProvincias.Offer(context().choices.Entries(Database(), kProvinces));
  cboFpago.Offer(PaymentMethods(context()));
}

void FrmTpv1::LoadTotals() {
  const SaleTotals totals = ReadSaleTotals(Database(), context().IdAlbaran);
  total_ = totals.total;
  Text1[10].text = FormatNumber(totals.base, "0.00");
  Text1[8].text = FormatNumber(totals.total, "0.00");
  Text1[3].text = FormatNumber(totals.tax(), "0.00");
  Text1[6].text = Text1[8].text;
  Text1[7].text = FormatNumber(0, "0.00");
}

}  // namespace tpv
