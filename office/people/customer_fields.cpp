#include "office/people/customer_fields.h"

#include <string_view>

namespace tpv::office::customer {

namespace {

constexpr FormField kFields[] = {
    {.column = kCode, .caption = "Código", .asks = Asks::Whole, .width = 6, .help = "El que se teclea en la venta.",
     .required = true, .unique = true, .least = 1, .most = 999'999, .frame = "Cliente"},
    {.column = "CLI_NOM", .caption = "Nombre o razón social", .asks = Asks::Text, .width = 50,
     .help = "Sale en sus tickets y facturas.", .required = true, .beside = true, .shown = 30},
    {.column = "CLI_APE1", .caption = "Primer apellido", .asks = Asks::Text, .width = 50,
     .help = "De una persona; una empresa no tiene.", .beside = true, .shown = 20},
    {.column = "CLI_APE2", .caption = "Segundo apellido", .asks = Asks::Text, .width = 50, .help = "Si lo tiene.",
     .beside = true, .shown = 20},
    {.column = kTradeName, .caption = "Nombre comercial", .asks = Asks::Text, .width = 50,
     .help = "El de su rótulo: también por él se le busca. Vacío: el mismo nombre.", .shown = 30},
    {.column = kDocument, .caption = "NIF", .asks = Asks::Text, .width = 20,
     .help = "NIF, NIE o CIF con su letra; de un cliente de otro país, el suyo.", .beside = true},
    {.column = kRegime, .caption = "Régimen de IVA", .asks = Asks::Choice, .width = 18,
     .help = "El que anotan sus ventas. La caja cobra a todos por el general.", .required = true, .beside = true},
    {.column = kStreetType, .caption = "Tipo de vía", .asks = Asks::Choice, .width = 16, .help = "Calle, plaza…",
     .frame = "Dirección"},
    {.column = "DIR_NOMBRE", .caption = "Nombre de la vía", .asks = Asks::Text, .width = 50, .help = "Sin el número.",
     .beside = true, .shown = 34},
    {.column = "DIR_NUMERO", .caption = "Número", .asks = Asks::Whole, .width = 5, .help = "0 o vacío si no tiene.",
     .most = 32'767, .beside = true},
    {.column = "DIR_ESCALERA", .caption = "Escalera", .asks = Asks::Text, .width = 2, .help = "Dos letras o cifras.",
     .beside = true},
    {.column = "DIR_PISO", .caption = "Piso", .asks = Asks::Text, .width = 2, .help = "Dos letras o cifras.",
     .beside = true},
    {.column = "DIR_PUERTA", .caption = "Puerta", .asks = Asks::Text, .width = 2, .help = "Dos letras o cifras.",
     .beside = true},
    {.column = kPostCode, .caption = "C.P.", .asks = Asks::Text, .width = 5, .help = "En España, cinco cifras."},
    {.column = "DIR_POBLACION", .caption = "Población", .asks = Asks::Text, .width = 50,
     .help = "Como sale en sus facturas.", .beside = true, .shown = 22},
    {.column = kProvince, .caption = "Provincia", .asks = Asks::Choice, .width = 18,
     .help = "De una dirección española.", .beside = true},
    {.column = kCountry, .caption = "País", .asks = Asks::Choice, .width = 18,
     .help = "Sin país, o de España, se comprueban el NIF y el código postal.", .beside = true},
    {.column = kMethod, .caption = "Forma de pago", .asks = Asks::Choice, .width = 24,
     .help = "La que le propone la venta.", .required = true, .frame = "Pago y notas"},
    {.column = kSeller, .caption = "Vendedor", .asks = Asks::Choice, .width = 17, .help = "El suyo, si lo tiene.",
     .beside = true},
    {.column = "Cli_Di1", .caption = "Día de pago", .asks = Asks::Whole, .width = 2,
     .help = "Del mes, si paga en días fijos: a él se llevan sus vencimientos.", .most = 31, .beside = true},
    {.column = "Cli_Di2", .caption = "Otro día", .asks = Asks::Whole, .width = 2, .help = "El segundo, si paga en dos.",
     .most = 31, .beside = true},
    {.column = "Cli_msp", .caption = "Mes sin pagos", .asks = Asks::Whole, .width = 2,
     .help = "El número del mes en que no paga: 8 es agosto.", .most = 12, .beside = true},
    {.column = kAccount, .caption = "Cuenta de cobro", .asks = Asks::Text, .width = 24,
     .help = "IBAN o número de cuenta, sin espacios: la piden las formas de pago por recibo."},
    {.column = kBank, .caption = "Banco de la tienda", .asks = Asks::Choice, .width = 32,
     .help = "En el que él ingresa: lo piden las transferencias.", .beside = true},
    {.column = "CLI_OBSER", .caption = "Observaciones", .asks = Asks::Text, .width = 255,
     .help = "Para la tienda: no se imprimen.", .shown = 40},
    {.column = "cli_FavObs", .caption = "En sus facturas", .asks = Asks::Text, .width = 255,
     .help = "Lo que se propone escribir en cada factura suya.", .beside = true, .shown = 40},
};

}  // namespace

std::span<const FormField> Fields() { return kFields; }

bool IsOfAddress(const FormField& field) { return std::string_view(field.column).starts_with("DIR_"); }

}  // namespace tpv::office::customer
