#include "office/shop_window.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "office/shop_ini.h"

namespace tpv::office {

namespace {

enum Index {
  kName, kTaxNumber, kStreetType, kStreet, kPostCode, kTown, kTelephone, kMail, kPlace, kTicketSeries,
  kInvoiceSeries, kTill, kWarehouse, kDrawerCodes, kCounter
};

struct TextField {
  Index index;
  const char* key;  // of shop.ini; "" for what is none of it
  const char* caption;
  int columns;
};

constexpr TextField kTexts[] = {
    {kName, "tienda.nombre", "Nombre de la tienda", 40},
    {kTaxNumber, "tienda.nif", "NIF o CIF", 12},
    {kStreetType, "tienda.tipo_via", "Vía", 4},
    {kStreet, "tienda.via", "Nombre de la vía y número", 40},
    {kPostCode, "tienda.codigo_postal", "C.P.", 6},
    {kTown, "tienda.poblacion", "Población", 30},
    {kTelephone, "tienda.telefono", "Teléfono", 16},
    {kMail, "tienda.correo_cierres", "Correo al que se envían los cierres (ninguno)", 40},
    {kPlace, "", "Se guarda en", 60},
    {kTicketSeries, "tickets.serie", "Serie de tickets", 8},
    {kInvoiceSeries, "tickets.serie_facturas", "Serie de facturas", 8},
    {kTill, "tickets.caja", "Caja de este equipo", 8},
    {kWarehouse, "almacen.nombre", "Nombre del almacén", 30},
    {kDrawerCodes, "cajon.codigos", "Códigos del cajón, o su dispositivo", 30},
    {kCounter, "clientes.contado", "Cliente de las ventas de mostrador", 40},
};

ui::Entries Offered(std::initializer_list<const char*> texts) {
  return ui::Entries(std::vector<std::string>(texts.begin(), texts.end()));
}

const char* KindOf(PaymentNeeds needs) {
  switch (needs) {
    case PaymentNeeds::CustomerAccount:
      return "recibo";
    case PaymentNeeds::OwnBank:
      return "transferencia";
    default:
      return "contado";
  }
}

std::vector<std::string> Rows(const std::vector<PaymentMethod>& methods) {
  std::vector<std::string> rows;
  for (const PaymentMethod& method : methods) {
    std::string days;
    for (const int day : method.days) days += (days.empty() ? "" : ", ") + std::to_string(day);
    rows.push_back(method.name + "; " + KindOf(method.needs) + "; " + days);
  }
  return rows;
}

std::vector<std::string> Rows(const std::vector<TaxRate>& rates) {
  std::vector<std::string> rows;
  for (const TaxRate& rate : rates) {
    rows.push_back(std::to_string(rate.kind) + "; " + ToSpanish(rate.rate) + "; " +
                   ToSpanish(rate.surcharge) + "; " + ToDayFirst(rate.from));
  }
  return rows;
}

constexpr int kLeastPriceDecimals = 2;

}  // namespace

ShopWindow::ShopWindow(ui::FrontEnd& front_end, Maker make, Proposal propose)
    : PagedWindow(front_end, "frmCrearTienda"),
      make_(std::move(make)),
      propose_(std::move(propose)),
      sellers_(*this, "Vendedores", {{"Vendedor", 40}}),
      methods_(*this, "Formas", {{"Forma de pago", 26}, {"Clase", 15, {"contado", "recibo", "transferencia"}},
                                 {"Días de sus plazos", 18}}),
      banks_(*this, "Bancos", {{"Cuenta propia", 26}}),
      taxes_(*this, "Tipos", {{"Tipo de los artículos", 18}, {"IVA %", 8}, {"Recargo %", 10}, {"Desde el", 12}}) {
  caption = "Crear mi tienda";
  const ShopSetup usual;
  for (const TextField& field : kTexts) {
    ui::TextBox& box = Text1.Add(field.index, field.caption);
    box.columns = field.columns;
    box.max_length = 200;
    controls_[field.key] = &box;
  }
  controls_.insert({{"tienda.recargo_equivalencia", &chkRecargo}, {"tickets.entrada_rapida", &chkRapida},
                    {"tickets.documentos", &cboDocumentos}, {"tickets.decimales_precio", &cboDecimalesPrecio},
                    {"tickets.decimales_unidades", &cboDecimalesUnidades}, {"cajon.metodo", &cboCajon},
                    {"vendedores.vendedor", &sellers_.list()}, {"formas_de_pago.forma", &methods_.list()},
                    {"formas_de_pago.banco", &banks_.list()}, {"iva.tipo", &taxes_.list()}});
  cboDocumentos.Offer(Offered({"Solo tickets", "Solo facturas", "Tickets y facturas"}));
  cboDocumentos.index = static_cast<int>(usual.documents);
  cboDecimalesPrecio.Offer(Offered({"2", "3", "4", "5", "6"}));
  cboDecimalesPrecio.index = usual.price_decimals - kLeastPriceDecimals;
  cboDecimalesUnidades.Offer(Offered({"0", "1", "2", "3", "4"}));
  cboDecimalesUnidades.index = usual.unit_decimals;
  cboCajon.Offer(Offered({"No hay cajón", "Códigos a la impresora", "Un dispositivo", "Una línea impresa",
                          "Códigos a LPT1"}));
  chkRapida.checked = usual.quick_entry;
  Text1[kStreetType].text = "CL";
  Text1[kTicketSeries].text = usual.ticket_series;
  Text1[kInvoiceSeries].text = usual.invoice_series;
  Text1[kTill].text = std::to_string(usual.till);
  Text1[kWarehouse].text = usual.warehouse;
  Text1[kDrawerCodes].text = "27,112,0,25,250";
  Text1[kCounter].text = usual.counter_customer;
  methods_.SetJoined(Rows(usual.payment_methods));
  taxes_.SetJoined(Rows(usual.tax_rates));
  DeclarePages();
  Text1[kName].left = [this] { ProposePlace(); };
  cmdBuscar.click = [this] {
    const std::string path = this->front_end().ChooseFile(
        {"Dónde se guarda la tienda", "Almacenes (*.db)", Text1[kPlace].text, ui::FileQuestion::Kind::New});
    if (!path.empty()) Text1[kPlace].text = path;
  };
  cmdAceptar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Close(); };
}

void ShopWindow::DeclarePages() {
  for (const Index wide : {kName, kStreet, kMail, kPlace}) Text1[wide].stretch = true;
  AddPage("&1 La tienda")
      .Rows({{&Text1[kName], &Text1[kTaxNumber]},
             {&Text1[kStreetType], &Text1[kStreet]},
             {&Text1[kPostCode], &Text1[kTown], &Text1[kTelephone]},
             {&Text1[kMail]},
             {&chkRecargo},
             {&Text1[kPlace], &cmdBuscar}});
  AddPage("&2 Tickets y caja")
      .Rows({{&Text1[kTicketSeries], &Text1[kInvoiceSeries], &cboDocumentos},
             {&cboDecimalesPrecio, &cboDecimalesUnidades, &Text1[kTill]},
             {&chkRapida},
             {&Text1[kWarehouse]},
             {&cboCajon, &Text1[kDrawerCodes]}});
  const auto with = [](std::vector<std::vector<ui::Control*>> first, ListEditor& list) {
    for (auto& row : list.Rows()) first.push_back(std::move(row));
    return first;
  };
  AddPage("&3 Vendedores").Rows(with({{&Text1[kCounter]}}, sellers_));
  AddPage("&4 Formas de pago").Rows(with(methods_.Rows(), banks_));
  AddPage("&5 IVA").Rows(taxes_.Rows());
  LayOutPages({&cmdAceptar, &cmdCancelar, &lblFalta});
  cmdAceptar.emphasis = ui::Emphasis::Strong;
}

// While the operator has written no other place.
void ShopWindow::ProposePlace() {
  if (Text1[kPlace].text != proposed_) return;
  const std::string shop = Trim(Text1[kName].text);
  proposed_ = shop.empty() ? std::string() : propose_(shop);
  Text1[kPlace].text = proposed_;
}

Ini ShopWindow::Typed() const {
  Ini ini;
  const auto add = [&](const char* key, std::string value, long line = 0) {
    ini.entries.push_back({key, std::move(value), line});
  };
  const auto add_list = [&](const char* key, const ListEditor& list) {
    long line = 0;
    for (std::string& row : list.GetJoined()) add(key, std::move(row), ++line);
  };
  for (const TextField& field : kTexts) {
    if (*field.key != '\0') add(field.key, Trim(Text1[field.index].text));
  }
  add("tienda.recargo_equivalencia", chkRecargo.checked ? "si" : "no");
  add("tickets.entrada_rapida", chkRapida.checked ? "si" : "no");
  add("tickets.documentos", std::to_string(cboDocumentos.index));
  add("tickets.decimales_precio", std::to_string(cboDecimalesPrecio.index + kLeastPriceDecimals));
  add("tickets.decimales_unidades", std::to_string(cboDecimalesUnidades.index));
  add("cajon.metodo", std::to_string(cboCajon.index));
  add_list("vendedores.vendedor", sellers_);
  add_list("formas_de_pago.forma", methods_);
  add_list("formas_de_pago.banco", banks_);
  add_list("iva.tipo", taxes_);
  return ini;
}

std::vector<std::pair<const char*, ListEditor*>> ShopWindow::Lists() {
  return {{"vendedores.vendedor", &sellers_},
          {"formas_de_pago.forma", &methods_},
          {"formas_de_pago.banco", &banks_},
          {"iva.tipo", &taxes_}};
}

// All of them; the focus goes to the first.
void ShopWindow::TellRefusals(const Refusals& refusals) {
  std::string text = "La tienda no se ha creado:";
  ui::Control* first = nullptr;
  for (const Refusal& refusal : refusals) {
    const auto control = controls_.find(refusal.field);
    const bool known = control != controls_.end();
    if (known && first == nullptr) first = control->second;
    std::string label = known ? control->second->caption : std::string();
    if (known && label.empty()) label = dynamic_cast<const ui::ListView&>(*control->second).layout[0].caption;
    const std::string row = refusal.line > 0 ? ", fila " + std::to_string(refusal.line) : std::string();
    text += "\r\n" + (label.empty() ? refusal.reason : label + row + ": " + refusal.reason);
  }
  Tell(text, ui::Icon::Exclamation);
  for (const auto& [key, list] : Lists()) {
    if (first == &list->list()) first = &list->Place();
  }
  if (first != nullptr) GoTo(*first);
}

void ShopWindow::Accept() {
  const ShopFile shop = ReadShop(Typed());
  Refusals refusals = shop.refusals;
  for (const auto& [key, list] : Lists()) {
    if (const std::string reason = list->Unadded(); !reason.empty()) refusals.push_back({0, key, reason});
  }
  const std::string place = Trim(Text1[kPlace].text);
  if (place.empty()) refusals.push_back({0, "", "falta"});
  try {
    if (refusals.empty()) refusals = make_(place, shop.setup);
  } catch (const std::exception& error) {
    refusals.push_back({0, "", error.what()});
  }
  if (!refusals.empty()) return TellRefusals(refusals);
  stored_ = place;
  Close();
}

}  // namespace tpv::office
