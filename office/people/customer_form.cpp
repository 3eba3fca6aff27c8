#include "office/people/customer_form.h"

#include <algorithm>

#include "data/retired.h"
#include "data/sql_text.h"
#include "office/people/customer_fields.h"
#include "office/tax_number.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

using namespace customer;

constexpr const char* kSpain = "011";

const RecordTable kCustomer{"Cli", "CLI_ID", "Cliente", Fields()};

ui::Entries EntriesOf(Connection& connection, const std::string& statement, const char* none) {
  std::vector<std::string> entries;
  if (none != nullptr) entries.emplace_back(none);
  for (const auto rows = connection.Execute(statement); !rows->Eof(); rows->MoveNext()) {
    entries.push_back(rows->Field(0).ToText() + " - " + rows->Field(1).TextOr(""));
  }
  return ui::Entries(std::move(entries));
}

}  // namespace

CustomerForm::CustomerForm(Context& context, std::int32_t id) : RecordForm(context, "frmCliente", kCustomer, id) {}

void CustomerForm::OfferChoices() {
  Offer(kRegime, ui::Entries({"1 - General", "2 - Recargo de equivalencia"}));
  Offer(kMethod, EntriesOf(Database(), "SELECT Fco_Id, Fco_Des FROM Fco WHERE " + NotRetired("Fco", "Fco_Id"),
                           "0 - Sin asignar"));
  Offer(kSeller, EntriesOf(Database(), "SELECT Age_ID, Age_NOM FROM Age WHERE " + NotRetired("Age", "Age_ID"),
                           "0 - Ninguno"));
  Offer(kBank, EntriesOf(Database(), "SELECT Ban_Id, Ban_CCC FROM BANCOS", "0 - Ninguno"));
  Offer(kStreetType, EntriesOf(Database(), "SELECT TVI_COD, TVI_NOM FROM zrcomun.dbo.TVI", nullptr));
  Offer(kProvince, EntriesOf(Database(), "SELECT PROV_COD, PROV_NOM FROM zrcomun.dbo.PROV", nullptr));
  Offer(kCountry, EntriesOf(Database(), "SELECT PAIS_COD, PAIS_NOM FROM zrcomun.dbo.PAIS", nullptr));
}

void CustomerForm::Fill() {
  OfferChoices();
  RecordForm::Fill();
  if (IsNew()) return;
  address_ = ReadAddress(Database(), Id());
  std::size_t next = 0;
  for (const FormField& field : fields()) {
    if (IsOfAddress(field) && address_.id != 0) Show(field.column, Variant(address_.values[next++]));
  }
}

void CustomerForm::FillNew() {
  constexpr std::int32_t kGeneral = 1;
  constexpr std::int32_t kCash = 1;
  Show(kCode, Variant(Database().Execute("SELECT MAX(CLI_COD) FROM Cli")->Field(0).IntOr(0) + 1));
  Show(kRegime, Variant(kGeneral));
  Show(kMethod, Variant(kCash));
  Show(kCountry, Variant(kSpain));
}

bool CustomerForm::IsSpanish() const {
  const std::string country = Plain(kCountry);
  return country.empty() || country == kSpain;
}

void CustomerForm::CheckDocument() {
  if (!IsChanged(kDocument) || Plain(kDocument).empty() || !IsSpanish()) return;
  const auto number = TaxNumber(Plain(kDocument));
  if (!number) {
    throw FieldFault(kDocument, "no es un NIF, NIE o CIF: la letra o la cifra de control no corresponde. El de otro "
                                "país se admite con ese país en la dirección");
  }
  Show(kDocument, Variant(*number));
}

void CustomerForm::CheckAccount() const {
  constexpr std::size_t kLeast = 20;
  const std::string account = Plain(kAccount);
  if (!IsChanged(kAccount) || account.empty()) return;
  const bool plain = account.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  if (account.size() < kLeast || !plain) {
    throw FieldFault(kAccount, "se admiten de 20 a 24 cifras y mayúsculas, sin espacios");
  }
}

void CustomerForm::CheckPostCode() const {
  const std::string post_code = Plain(kPostCode);
  if (!IsChanged(kPostCode) || post_code.empty() || !IsSpanish()) return;
  const bool five_digits = post_code.size() == 5 && post_code.find_first_not_of("0123456789") == std::string::npos;
  if (!five_digits) throw FieldFault(kPostCode, "se esperan cinco cifras");
}

void CustomerForm::Check() {
  CheckDocument();
  CheckAccount();
  CheckPostCode();
}

void CustomerForm::StoreOwn() {
  RequireCounterCustomer();
  StoreTradeName();
  StoreTypedAddress();
}

// The parameters name him by his code.
void CustomerForm::RequireCounterCustomer() {
  if (!IsChanged(kCode)) return;
  const auto lost = Database().Execute("SELECT TOP 1 Par_CliCon FROM Parametros WHERE ISNULL(Par_CliCon, 0) <> 0 AND "
                                       "Par_CliCon NOT IN (SELECT CLI_COD FROM Cli)");
  if (!lost->Eof()) throw FieldFault(kCode, "es el cliente de contado: elija antes otro en los parámetros");
}

void CustomerForm::StoreTradeName() {
  if (!Plain(kTradeName).empty()) return;
  Database().Execute("UPDATE Cli SET CLI_COMER = CLI_NOM WHERE CLI_ID = " + sql::Number(std::int64_t{Id()}));
}

// What the card does not know, a province that its list has not, stays.
CustomerAddress CustomerForm::Typed() const {
  CustomerAddress typed{address_.id, {}};
  std::size_t next = 0;
  for (const FormField& field : fields()) {
    if (!IsOfAddress(field)) continue;
    const bool kept = address_.id != 0 && !IsChanged(field.column);
    typed.values.push_back(kept ? address_.values[next] : Plain(field.column));
    ++next;
  }
  return typed;
}

void CustomerForm::StoreTypedAddress() {
  const auto says_where = [&](const FormField& field) {
    return IsOfAddress(field) && field.column != std::string_view(kCountry) && !Plain(field.column).empty();
  };
  if (ReadAddress(Database(), Id()) != address_) {
    throw FieldFault("", "Otro puesto ha cambiado estos datos mientras tanto. Salga y vuelva a abrirlos");
  }
  const CustomerAddress typed = Typed();
  if (typed == address_) return;
  if (typed.id == 0 && std::none_of(fields().begin(), fields().end(), says_where)) return;
  StoreAddress(Database(), Id(), typed);
}

}  // namespace tpv::office
