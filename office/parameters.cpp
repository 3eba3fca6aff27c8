#include "office/parameters.h"

#include <algorithm>

#include "base/rounding.h"
#include "base/text.h"
#include "data/decimals.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "data/tax_kinds.h"
#include "office/drawer_codes.h"
#include "office/forms/counted.h"
#include "office/tax_number.h"
#include "office/warehouses.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr int kLeastPriceDecimals = 2;
constexpr int kMostPriceDecimals = 6;

constexpr FormField kFields[] = {
    {.column = "Par_Nombre", .caption = "Nombre", .asks = Asks::Text, .width = 100,
     .help = "La primera línea de los tickets y de las facturas, y quien firma los correos.", .required = true,
     .frame = "Tienda", .shown = 34},
    {.column = "Par_Doc", .caption = "NIF o CIF", .asks = Asks::Text, .width = 20,
     .help = "Sale en los tickets y en las facturas. Se comprueba su letra o cifra de control.", .required = true,
     .beside = true, .shown = 12},
    {.column = "Par_Telefono", .caption = "Teléfono", .asks = Asks::Text, .width = 30, .help = "Sale en los tickets.",
     .beside = true, .shown = 14},
    {.column = "Par_Sg", .caption = "Vía", .asks = Asks::Text, .width = 5,
     .help = "La clase de vía: CL (calle), AV (avenida), PZ (plaza)…"},
    {.column = "Par_NombreVia", .caption = "Dirección", .asks = Asks::Text, .width = 100,
     .help = "El nombre de la vía y el número, como salen en los tickets.", .beside = true, .shown = 30},
    {.column = "Par_Cp", .caption = "C.P.", .asks = Asks::Text, .width = 10, .help = "Cinco cifras.", .beside = true,
     .shown = 6},
    {.column = "Par_Poblacion", .caption = "Población", .asks = Asks::Text, .width = 50, .help = "Sale en los tickets.",
     .beside = true, .shown = 20},
    {.column = "Par_CliCon", .caption = "Cliente de contado", .asks = Asks::Whole, .width = 9,
     .help = "El código del cliente que se propone en cada venta. No puede comprar a crédito, y a su nombre van las "
             "facturas por periodo. Vacío, ninguno.",
     .frame = "Ventas"},
    {.column = "Par_Alma", .caption = "Almacén", .asks = Asks::Choice, .width = 22,
     .help = "De donde descuentan las existencias las ventas. Vacío, no se descuentan de ninguno.", .beside = true},
    {.column = "Par_NumCaja", .caption = "Caja", .asks = Asks::Whole, .width = 5,
     .help = "El número que se propone en un equipo que no tiene puesto el suyo.", .least = 1, .most = 32767,
     .beside = true},
    {.column = "par_decpre", .caption = "Decimales de precio", .asks = Asks::Whole, .width = 1,
     .help = "De los precios sin IVA. Con 4, el precio con IVA sale siempre exacto; con 2, algunos no pueden cobrarse.",
     .required = true, .least = kLeastPriceDecimals, .most = kMostPriceDecimals, .beside = true},
    {.column = "par_deccan", .caption = "De unidades", .asks = Asks::Whole, .width = 1,
     .help = "Decimales con los que se ven las unidades: 3 para vender al peso en gramos.", .required = true, .most = 4,
     .beside = true},
    {.column = "Par_Rapida", .caption = "Entrada rápida", .asks = Asks::Flag,
     .help = "El artículo leído se anota solo. Sin ella, cada línea se acepta con Guardar.", .beside = true},
    {.column = "Par_SerTic", .caption = "Serie de tickets", .asks = Asks::Text, .width = 5,
     .help = "La serie de los tickets nuevos. Otra serie empieza otra numeración.", .frame = "Tickets, facturas y cajón"},
    {.column = "Par_SerTicFac", .caption = "Serie de facturas", .asks = Asks::Text, .width = 5,
     .help = "La de las facturas de tickets. Vacía, los tickets no se pueden facturar.", .beside = true},
    {.column = "Par_Impre", .caption = "El cobro termina con", .asks = Asks::Choice, .width = 22,
     .help = "Lo que ofrece el cobro al terminar una venta.", .required = true, .beside = true},
    {.column = "par_tpvemail", .caption = "Correo de los cierres", .asks = Asks::Text, .width = 100,
     .help = "A quién se envía el ticket de cada cierre. Vacío, a nadie.", .beside = true, .shown = 26},
    {.column = "Par_PCajon", .caption = "Cajón", .asks = Asks::Choice, .width = 34,
     .help = "Cómo se abre el cajón del dinero."},
    {.column = "Par_SCajon", .caption = "Códigos o dispositivo del cajón", .asks = Asks::Text, .width = 100,
     .help = "Los códigos que abren el cajón, separados por comas (27,112,0,25,250), o el nombre del dispositivo.",
     .beside = true, .shown = 30},
};

constexpr RecordTable kParameters{"Parametros", nullptr, "Parámetros", kFields};

// Articles whose price with tax would be another with so many decimals.
std::size_t PricesMoved(Connection& connection, int before, int after) {
  const TaxKinds taxes = TaxKindsToday(connection);
  const auto rows = connection.Execute("SELECT art_pve, art_tiva FROM ART WHERE art_pve IS NOT NULL");
  std::size_t moved = 0;
  for (; !rows->Eof(); rows->MoveNext()) {
    const auto tax = taxes.find(rows->Field(1).IntOr(0));
    if (tax == taxes.end()) continue;
    const double net = rows->Field(0).NumberOr(0);
    moved += !SameCents(PriceWithTax(RoundHalfAway(net, before), tax->second),
                        PriceWithTax(RoundHalfAway(net, after), tax->second));
  }
  return moved;
}

bool AreDigits(const std::string& text) {
  return std::all_of(text.begin(), text.end(), IsDigit);
}

}  // namespace

ParametersForm::ParametersForm(Context& context) : RecordForm(context, "frmParametros", kParameters, 0) {}

void ParametersForm::Fill() {
  Offer("Par_Alma", WarehouseEntries(Database()));
  Offer("Par_Impre", ui::Entries({"0 - Solo ticket", "1 - Solo factura", "2 - Ticket o factura"}));
  Offer("Par_PCajon", ui::Entries({"0 - No hay cajón", "1 - Códigos por la impresora de tickets",
                                   "2 - Códigos a un dispositivo", "3 - Línea de texto en la impresora",
                                   "4 - Códigos a LPT1"}));
  RecordForm::Fill();
  price_decimals_ = PriceDecimals(context());
}

void ParametersForm::Check() {
  CheckShop();
  CheckDrawer();
  CheckDecimals();
}

void ParametersForm::CheckShop() const {
  const std::string fault = IsChanged("Par_Doc") ? TaxNumberFault(Plain("Par_Doc")) : std::string();
  if (!fault.empty()) throw FieldFault("Par_Doc", fault);
  const std::string post_code = Plain("Par_Cp");
  const bool five_digits = post_code.size() == 5 && AreDigits(post_code);
  if (IsChanged("Par_Cp") && !five_digits) throw FieldFault("Par_Cp", "se esperan cinco cifras");
  const std::string mail = Plain("par_tpvemail");
  if (IsChanged("par_tpvemail") && !mail.empty() && mail.find('@') == std::string::npos) {
    throw FieldFault("par_tpvemail", "se espera una dirección de correo, o nada");
  }
  const bool only_tickets = Plain("Par_Impre") == "0";
  const bool asked = IsChanged("Par_Impre") || IsChanged("Par_SerTicFac");
  if (asked && !only_tickets && Plain("Par_SerTicFac").empty()) {
    throw FieldFault("Par_SerTicFac", "falta: sin serie, el cobro solo puede terminar con ticket");
  }
}

void ParametersForm::CheckDrawer() const {
  if (!IsChanged("Par_PCajon") && !IsChanged("Par_SCajon")) return;
  const std::string fault = DrawerFault(Whole("Par_PCajon"), Plain("Par_SCajon"));
  if (!fault.empty()) throw FieldFault("Par_SCajon", fault);
}

void ParametersForm::CheckDecimals() {
  const int wanted = Whole("par_decpre");
  if (wanted >= price_decimals_) return;
  const std::size_t moved = PricesMoved(Database(), price_decimals_, wanted);
  const std::string question = "Con menos decimales cambiaría el precio con IVA de " +
                               Counted(moved, "artículo", "artículos") + ". ¿Desea seguir?";
  if (moved > 0 && !Confirm(question, ui::Icon::Exclamation, ui::Answer::No)) {
    throw FieldFault("par_decpre", "los precios piden " + std::to_string(price_decimals_));
  }
}

void ParametersForm::StoreOwn() {
  const std::int32_t code = Whole("Par_CliCon");
  if (code == 0 || !IsChanged("Par_CliCon")) return;
  const auto customer =
      Database().Execute("SELECT TOP 1 CLI_ID FROM Cli WHERE CLI_COD = " + sql::Number(std::int64_t{code}));
  if (customer->Eof()) throw FieldFault("Par_CliCon", "no hay ningún cliente con ese código");
  if (IsRetired(Database(), "Cli", customer->Field(0).ToInt32())) {
    throw FieldFault("Par_CliCon", "ese cliente está retirado");
  }
}

}  // namespace tpv::office
