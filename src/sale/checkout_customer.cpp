// The customer's side of the checkout: look-up, address, what goes into the
// ticket's header.
#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "context/kept_sale.h"
#include "data/sql_text.h"
#include "debt/customer_debt.h"
#include "debt/pending_screen.h"
#include "platform/database.h"
#include "platform/objects.h"
#include "sale/checkout_dialog.h"
#include "sale/payment_methods.h"
#include "sale/sale_screen.h"

namespace tpv {

void FrmTpv1::msBuscarClientes(std::int32_t code, std::int32_t id) {
  const bool searched = code == -1 && id == 0;
  const auto customer = FindCustomer(context(), toolkit(), code, id, Offered::InUse);
  const bool nothing_asked = id == 0 && (searched || code < 0);
  if (customer) {
    ShowCustomer(*customer);
  } else if (!nothing_asked) {
    customer_id_ = 0;
  }
}

void FrmTpv1::ShowCustomer(const CustomerRecord& customer) {
  customer_id_ = customer.Id();
  Text1[2].text = std::to_string(customer.Code());
  Text1[5].text = Left(customer.Name(), 50);
  Text1[24].text = Trim(customer["Cli_doc"].TextOr(""));
  SelectPaymentMethod(cboFpago, customer["Cli_Fco"].IntOr(0));
  // Without an entry of his own nobody's is stored, the last customer's least of all.
  cboTipoVia.index = cboProvincias.index = -1;
  const std::string street_type = customer["Dir_Sg"].TextOr("");
  cboTipoVia.SelectIf([&](std::string_view entry) { return Left(entry, 2) == street_type; });
  const std::pair<int, const char*> address[] = {
      {14, "DIR_NOMBRE"}, {4, "DIR_numero"}, {9, "Dir_Escalera"}, {1, "Dir_Piso"},
      {11, "Dir_Puerta"}, {12, "Dir_Cp"},    {13, "DIR_POBLACION"}};
  for (const auto& [index, field] : address) Text1[index].text = customer[field].TextOr("");
  SelectCountry(customer["DIR_PAIS"]);
  const std::int32_t province = Int32OrZero(customer["DIR_Provincia"].TextOr(""));
  cboProvincias.SelectIf(
      [&](std::string_view entry) { return LeadingNumber(entry.substr(0, 2)) == province; });
  Text1[15].text = FormatNumber(CustomerDebt(context(), customer_id_), "#,##0.00");
}

// An address without a country is one of this country, the tenth of the list.
void FrmTpv1::SelectCountry(const Variant& code) {
  constexpr int kHomeCountry = 9;
  const std::int32_t number = Int32OrZero(code.TextOr(""));
  cboPais.index = -1;
  if (number == 0) {
    if (cboPais.items.size() > kHomeCountry) cboPais.index = kHomeCountry;
    return;
  }
  cboPais.SelectIf([&](std::string_view entry) { return LeadingNumber(entry.substr(0, 3)) == number; });
}

void FrmTpv1::LeaveCustomer() {
  if (Text1[2].text.empty()) return;
  msBuscarClientes(ParseInt32(Text1[2].text).value_or(0), 0);
  if (customer_id_ == 0) Refuse("Codigo de cliente no existe", &Text1[2]);
}

namespace {

// 0 from a card that tells the new customer's code alone.
std::int32_t NewCustomerId(Object& card) {
  try {
    return card.Get("IdCliente").IntOr(0);
  } catch (const ObjectError&) {
    return 0;
  }
}

}  // namespace

void FrmTpv1::NewCustomer() {
  const auto card = context().ports.objects.Create("ZRCLIENTES.ZRCLI");
  card->Put("MyBd", Variant(Variant::ObjectRef(context().MyBd)));
  const std::int32_t code = card->Invoke("zShowNuevoCliente").IntOr(0);
  if (code > 0) msBuscarClientes(code, NewCustomerId(*card));
}

void FrmTpv1::ShowPending() {
  const KeptSale kept(context());
  FrmTpvPendiente pending(context(), SaleViewer(context()));
  context().ports.ui.Load(pending);
  pending.Text1[9].text = Text1[2].text;
  pending.Text1[4].text = Text1[5].text;
  pending.IdCliente = customer_id_;
  pending.msCargaRegistros();
  context().ports.ui.ShowModal(pending);
}

void FrmTpv1::msActualizaClienteAlbaran() {
  RowBuilder& row = context().MyBd->NuevaSentencia();
  row.Tabla("Cav");
  row.BeginTrans(false);
  const auto text = [&](const char* column, const std::string& value) {
    row.Add(column, ValueKind::Text, Variant(value));
  };
  const std::string province = cboProvincias.Text();
  const std::string country = cboPais.Text();
  row.Add("Cav_IdCli", ValueKind::Whole, Variant(customer_id_));
  text("Cav_NFiscal", Text1[5].text);
  text("Cav_NCom", Text1[5].text);
  text("Cav_SG", Left(cboTipoVia.Text(), 2));
  text("Cav_NOMBRE", Text1[14].text);
  row.Add("Cav_Num", ValueKind::Whole, Variant(Int32OrZero(Text1[4].text)));
  text("Cav_ESCALERA", Text1[9].text);
  text("Cav_Piso", Text1[1].text);
  text("Cav_Puerta", Text1[11].text);
  text("Cav_Cp", Text1[12].text);
  text("Cav_Pais", Left(country, 3));
  text("Cav_PROVINCIA", Left(province, 3));
  text("Cav_POBLACION", Text1[13].text);
  text("Cav_CliDoc", Text1[24].text);
  text("Cav_SProv", From(province, 6));
  text("Cav_SPais", From(country, 7));
  row.Add("Cav_Cobrado", ValueKind::Flag, Variant(!on_credit_));
  row.Where(" WHERE Cav_Id = " + sql::Number(std::int64_t{context().IdAlbaran}));
  std::string error;
  if (!row.Update(error)) throw DatabaseError(error);
}

}  // namespace tpv
