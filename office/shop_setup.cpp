#include "office/shop_setup.h"

#include "data/insert_row.h"
#include "office/places.h"
#include "office/tax_number.h"

namespace tpv::office {

namespace {

constexpr int kGeneral = 1;
constexpr int kSurcharged = 2;

void FillTaxes(Connection& connection, const ShopSetup& setup) {
  const auto insert = [&](const TaxRate& rate, int regime, double surcharge) {
    sql::InsertRow(connection, "zrcomun.dbo.tivas",
                   "Tiva_iva, Tiva_rec, tiva_reg, tiva_art, Tiva_Fecha",
                   {rate.rate, surcharge, regime, rate.kind, rate.from});
  };
  for (const TaxRate& rate : setup.tax_rates) {
    insert(rate, kGeneral, setup.surcharged ? rate.surcharge : 0);
  }
  for (const TaxRate& rate : setup.tax_rates) insert(rate, kSurcharged, rate.surcharge);
}

void FillPaymentMethods(Connection& connection, const ShopSetup& setup) {
  int id = 0;
  for (const PaymentMethod& method : setup.payment_methods) {
    const int needs = static_cast<int>(method.needs);
    sql::InsertRow(connection, "Fco", "Fco_Des", {method.name});
    ++id;
    sql::InsertRow(connection, "Fcol", "Fcol_id, Fcol_Mod", {id, needs});
    for (const int days : method.days) {
      sql::InsertRow(connection, "Plazos", "plazo_idfco, plazo_modo, plazo_dias, plazo_por",
                     {id, needs, days, 100.0 / static_cast<double>(method.days.size())});
    }
  }
  for (const std::string& bank : setup.banks)
    sql::InsertRow(connection, "BANCOS", "Ban_CCC", {bank});
}

void FillPeople(Connection& connection, const ShopSetup& setup) {
  for (const std::string& seller : setup.sellers) {
    sql::InsertRow(connection, "Age", "Age_NOM, Age_Reg", {seller, kGeneral});
  }
  sql::InsertRow(connection, "Cli", "CLI_COD, CLI_NOM, CLI_COMER, CLI_FCO, cli_doc, Cli_Reg",
                 {1, setup.counter_customer, setup.counter_customer, 1, "", kGeneral});
}

void FillParameters(Connection& connection, const ShopSetup& setup) {
  connection.Execute("DELETE FROM Parametros");
  sql::InsertRow(
      connection, "Parametros",
      "Par_NumCaja, Par_CliCon, Par_SerTic, Par_SerTicFac, Par_Alma, Par_Rapida, par_decpre, "
      "par_deccan, Par_Impre, Par_PCajon, Par_SCajon, Par_Nombre, Par_Sg, Par_NombreVia, "
      "Par_Cp, Par_Poblacion, Par_Telefono, Par_Doc, par_tpvemail",
      {setup.till, 1, setup.ticket_series,
       setup.invoice_series.empty() ? sql::Null() : sql::Value(setup.invoice_series), 1,
       setup.quick_entry, setup.price_decimals, setup.unit_decimals,
       static_cast<int>(setup.documents), setup.drawer, setup.drawer_codes, setup.name,
       setup.street_type, setup.street, setup.post_code, setup.town, setup.telephone,
       TaxNumber(setup.tax_number).value_or(""), setup.closing_mail});
}

// A parameters record without a name is how a new store begins.
bool HoldsAShop(Connection& connection) {
  for (const char* rows : {"Cav", "DiaCaj", "Cli", "ART", "Age", "Fco", "Dir", "alm",
                           "zrcomun.dbo.tivas", "Parametros WHERE Par_Nombre IS NOT NULL"}) {
    if (!connection.Execute(std::string("SELECT TOP 1 * FROM ") + rows)->Eof()) return true;
  }
  return false;
}

}  // namespace

std::vector<TaxRate> TaxRatesInForce() {
  const DateTime since{2012, 9, 1};
  return {{1, 21, 5.2, since}, {2, 10, 1.4, since}, {3, 4, 0.5, since}, {4, 0, 0, since}};
}

void FillShop(Connection& connection, const ShopSetup& setup) {
  if (connection.Execute("SELECT TOP 1 * FROM zrcomun.dbo.TVI")->Eof()) FillPlaces(connection);
  FillTaxes(connection, setup);
  sql::InsertRow(connection, "alm", "alm_des", {setup.warehouse});
  FillPaymentMethods(connection, setup);
  FillPeople(connection, setup);
  FillParameters(connection, setup);
}

Refusals StoreShop(Connection& connection, const ShopSetup& setup) {
  Refusals refusals = CheckShop(setup);
  if (!refusals.empty()) return refusals;
  Transaction transaction(connection);
  if (HoldsAShop(connection)) return {{0, "", "el almacén ya tiene datos: se dejan como están"}};
  FillShop(connection, setup);
  transaction.Commit();
  return {};
}

}  // namespace tpv::office
