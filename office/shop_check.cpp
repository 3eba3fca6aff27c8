// What a shop's set-up has to be before it is stored.
#include <algorithm>
#include <set>

#include "base/text.h"
#include "data/schema.h"
#include "office/drawer_codes.h"
#include "office/shop_setup.h"
#include "office/tax_number.h"

namespace tpv::office {

namespace {

class Check {
 public:
  explicit Check(Refusals& refusals) : refusals_(refusals) {}

  void That(bool right, const char* field, const std::string& reason) {
    if (!right) refusals_.push_back({entry_, field, reason});
  }
  // What is refused of an entry says which one it is.
  template <typename Entries, typename CheckEntry>
  void Each(const Entries& entries, CheckEntry check) {
    for (const auto& entry : entries) {
      ++entry_;
      check(entry);
    }
    entry_ = 0;
  }
  // As long as its column takes.
  void Text(const std::string& value, const char* field, const char* table, const char* column) {
    const schema::Table& place = *schema::FindTable(table);
    const int most = place.columns[static_cast<std::size_t>(place.Find(column))].length;
    That(Length(value) <= static_cast<std::size_t>(most), field,
         "caben " + std::to_string(most) + " caracteres");
    That(OneLine(value) == value, field, "tiene caracteres que no son de un texto");
  }
  void Needed(const std::string& value, const char* field, const char* table, const char* column) {
    That(!Trim(value).empty(), field, "falta");
    Text(value, field, table, column);
  }
  void Between(int value, int least, int most, const char* field) {
    That(value >= least && value <= most, field,
         "se espera un número de " + std::to_string(least) + " a " + std::to_string(most));
  }

 private:
  Refusals& refusals_;
  long entry_ = 0;
};

bool AreDigits(const std::string& text) {
  return std::all_of(text.begin(), text.end(), IsDigit);
}

void CheckIdentity(Check& check, const ShopSetup& setup) {
  check.Needed(setup.name, "tienda.nombre", "Parametros", "Par_Nombre");
  const std::string tax_number_fault = TaxNumberFault(setup.tax_number);
  check.That(tax_number_fault.empty(), "tienda.nif", tax_number_fault);
  check.Text(setup.street_type, "tienda.tipo_via", "Parametros", "Par_Sg");
  check.Needed(setup.street, "tienda.via", "Parametros", "Par_NombreVia");
  check.That(setup.post_code.size() == 5 && AreDigits(setup.post_code), "tienda.codigo_postal",
             "se esperan cinco cifras");
  check.Needed(setup.town, "tienda.poblacion", "Parametros", "Par_Poblacion");
  check.Text(setup.telephone, "tienda.telefono", "Parametros", "Par_Telefono");
  check.Text(setup.closing_mail, "tienda.correo_cierres", "Parametros", "par_tpvemail");
  check.That(setup.closing_mail.empty() || setup.closing_mail.find('@') != std::string::npos,
             "tienda.correo_cierres", "se espera una dirección de correo, o nada");
}

void CheckTill(Check& check, const ShopSetup& setup) {
  check.Text(setup.ticket_series, "tickets.serie", "Parametros", "Par_SerTic");
  check.Text(setup.invoice_series, "tickets.serie_facturas", "Parametros", "Par_SerTicFac");
  check.Between(static_cast<int>(setup.documents), 0, 2, "tickets.documentos");
  check.That(setup.documents == Documents::Ticket || !setup.invoice_series.empty(),
             "tickets.serie_facturas", "falta: sin serie solo se hacen tickets (documentos = 0)");
  check.Between(setup.price_decimals, 2, 6, "tickets.decimales_precio");
  check.Between(setup.unit_decimals, 0, 4, "tickets.decimales_unidades");
  check.Between(setup.till, 1, 32767, "tickets.caja");
  check.Needed(setup.warehouse, "almacen.nombre", "alm", "alm_des");
  check.Between(setup.drawer, 0, 4, "cajon.metodo");
  check.Text(setup.drawer_codes, "cajon.codigos", "Parametros", "Par_SCajon");
  const std::string fault = DrawerFault(setup.drawer, setup.drawer_codes);
  check.That(fault.empty(), "cajon.codigos", fault);
}

void CheckPeople(Check& check, const ShopSetup& setup) {
  check.Needed(setup.counter_customer, "clientes.contado", "Cli", "CLI_NOM");
  check.That(!setup.sellers.empty(), "vendedores.vendedor",
             "falta: hace falta un vendedor al menos");
  check.Each(setup.sellers, [&](const std::string& seller) {
    check.Needed(seller, "vendedores.vendedor", "Age", "Age_NOM");
  });
  check.That(!setup.payment_methods.empty(), "formas_de_pago.forma",
             "falta: hace falta una forma de pago al menos");
  check.Each(setup.payment_methods, [&](const PaymentMethod& method) {
    check.Needed(method.name, "formas_de_pago.forma", "Fco", "Fco_Des");
    const bool dated =
        !method.days.empty() && std::all_of(method.days.begin(), method.days.end(),
                                            [](int days) { return days >= 0 && days <= 3650; });
    check.That(dated, "formas_de_pago.forma", "los días van de 0 a 3650");
  });
  check.Each(setup.banks,
             [&](const std::string& bank) { check.Needed(bank, "formas_de_pago.banco", "BANCOS", "Ban_CCC"); });
}

void CheckTaxes(Check& check, const ShopSetup& setup) {
  check.That(!setup.tax_rates.empty(), "iva.tipo", "falta: hace falta un tipo de IVA al menos");
  std::set<std::pair<int, DateTime>> known;
  check.Each(setup.tax_rates, [&](const TaxRate& rate) {
    check.Between(rate.kind, 1, 99, "iva.tipo");
    check.That(rate.rate >= 0 && rate.rate <= 100 && rate.surcharge >= 0 && rate.surcharge <= 100,
               "iva.tipo", "los porcentajes van de 0 a 100");
    check.That(IsValid(rate.from), "iva.tipo", "la fecha no existe");
    check.That(known.insert({rate.kind, rate.from}).second, "iva.tipo",
               "el tipo " + std::to_string(rate.kind) + " está dos veces desde la misma fecha");
  });
}

}  // namespace

Refusals CheckShop(const ShopSetup& setup) {
  Refusals refusals;
  Check check(refusals);
  CheckIdentity(check, setup);
  CheckTill(check, setup);
  CheckPeople(check, setup);
  CheckTaxes(check, setup);
  return refusals;
}

}  // namespace tpv::office
