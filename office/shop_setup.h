// A shop's beginning: all that its first sale needs, checked and stored at once.
#pragma once

#include <string>
#include <vector>

#include "base/date_time.h"
#include "data/decimals.h"
#include "office/refusal.h"

namespace tpv {
class Connection;
}

namespace tpv::office {

// A rate of an article's tax kind from a date on.
struct TaxRate {
  int kind = 1;          // art_tiva
  double rate = 0;       // percent
  double surcharge = 0;  // percent, of the equivalence regime
  DateTime from{2012, 9, 1};
};

// General, reduced, super-reduced and exempt (kinds 1 to 4) as they are in force.
std::vector<TaxRate> TaxRatesInForce();

// Fcol_Mod: what an invoice paid so asks for.
enum class PaymentNeeds : int { Nothing = 1, CustomerAccount = 2, OwnBank = 4 };

struct PaymentMethod {
  std::string name;
  PaymentNeeds needs = PaymentNeeds::Nothing;
  std::vector<int> days{0};  // of its parts after the invoice, all of one size
};

enum class Documents : int { Ticket = 0, Invoice = 1, Both = 2 };

// Field by field with the key of shop.ini, which its refusals name.
struct ShopSetup {
  std::string name;          // tienda.nombre
  std::string tax_number;    // tienda.nif
  std::string street_type;   // tienda.tipo_via, two letters
  std::string street;        // tienda.via, with its number
  std::string post_code;     // tienda.codigo_postal
  std::string town;          // tienda.poblacion
  std::string telephone;     // tienda.telefono
  std::string closing_mail;  // tienda.correo_cierres, "" for none
  // tienda.recargo_equivalencia: every sale charges the surcharge, for who sells to
  // retailers of that regime alone. A retailer of it charges none: it stays with
  // regime 2, and the till's screens sell by regime 1.
  bool surcharged = false;

  std::string ticket_series = "T";        // tickets.serie
  std::string invoice_series = "F";       // tickets.serie_facturas, "" for no invoices
  Documents documents = Documents::Both;  // tickets.documentos
  int price_decimals = kNewShopPriceDecimals;    // tickets.decimales_precio, 2 to 6
  int unit_decimals = 2;                  // tickets.decimales_unidades, 0 to 4
  bool quick_entry = true;                // tickets.entrada_rapida
  int till = 1;                           // tickets.caja, proposed where none is chosen

  std::string warehouse = "Tienda";  // almacen.nombre
  int drawer = 0;                    // cajon.metodo, 0 none to 4
  std::string drawer_codes;          // cajon.codigos, or the name of a device

  std::string counter_customer = "CLIENTE CONTADO";                      // clientes.contado, code 1
  std::vector<std::string> sellers;                                      // vendedores.vendedor
  std::vector<PaymentMethod> payment_methods{{"Contado"}, {"Tarjeta"}};  // formas_de_pago.forma
  std::vector<std::string> banks;  // formas_de_pago.banco, account codes of the shop
  std::vector<TaxRate> tax_rates = TaxRatesInForce();  // iva.tipo
};

// All that is wrong with it; nothing for a shop that can begin. The line of a refusal is
// which entry of its list it is about, from 1.
Refusals CheckShop(const ShopSetup& setup);

// Fills a store without rows in the caller's transaction. CheckShop accepts the set-up.
void FillShop(Connection& connection, const ShopSetup& setup);

// Stores the shop in one transaction of its own. The store's tables are there and
// hold no shop yet, which is asked inside. Refuses what CheckShop refuses and a
// store in use, and then nothing is changed. Throws DatabaseError.
Refusals StoreShop(Connection& connection, const ShopSetup& setup);

}  // namespace tpv::office
