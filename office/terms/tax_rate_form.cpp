#include "office/terms/tax_rate_form.h"

#include "base/date_time.h"
#include "data/insert_row.h"

namespace tpv::office {

namespace {

constexpr const char* kKind = "tiva_art";
constexpr const char* kRate = "Tiva_iva";
constexpr const char* kSurcharge = "recargo";
constexpr const char* kFrom = "Tiva_Fecha";
constexpr const char* kCharged = "cobrado";
constexpr const char* kRates = " FROM zrcomun.dbo.tivas WHERE ";
constexpr const char* kGeneral = "tiva_reg = 1 AND ";
constexpr const char* kSurcharged = "tiva_reg = 2 AND ";

constexpr FormField kFields[] = {
    {.column = kKind, .caption = "Clase", .asks = Asks::Whole, .width = 3,
     .help = "La que llevan los artículos en su ficha: 1 general, 2 reducido, 3 superreducido, 4 exento… Un número "
             "que no está en la lista es una clase nueva.",
     .required = true, .least = 1, .most = 99},
    {.column = kRate, .caption = "% IVA", .asks = Asks::Amount, .width = 6, .help = "El que rige desde ese día.",
     .required = true, .most = 100, .beside = true},
    {.column = kSurcharge, .caption = "% Recargo", .asks = Asks::Amount, .width = 6,
     .help = "El recargo de equivalencia que va con ese IVA; 0 si no lo tiene.", .required = true, .most = 100,
     .beside = true},
    {.column = kFrom, .caption = "Desde", .asks = Asks::Date, .width = 10,
     .help = "El primer día en que se vende con él. Los precios se guardan sin IVA: ese día cambia lo que se paga, si "
             "no se cambian también los precios.",
     .required = true, .beside = true, .shown = 13},
    {.column = kCharged, .caption = "Las ventas cobran el recargo", .asks = Asks::Flag,
     .help = "Solo si la tienda vende a comerciantes en recargo de equivalencia: se suma a cada precio."},
};

constexpr RecordTable kTaxRate{"zrcomun.dbo.tivas", "Tiva_Id", "Tipo de IVA", kFields};

}  // namespace

TaxRateForm::TaxRateForm(Context& context, std::int32_t id) : RecordForm(context, "frmTipoIva", kTaxRate, id) {
  ControlOf(kKind).left = [this] { ProposeCharging(); };
}

// What the two rows of a rate have in common, by what the fields hold.
std::string TaxRateForm::OfTwin() const {
  return "tiva_art = " + sql::WholeNumber(Plain(kKind)) + " AND Tiva_Fecha = '" + sql::DateText(Plain(kFrom)) + "'";
}

TaxRateForm::Surcharge TaxRateForm::ReadSurcharge() {
  const auto own = Database().Execute("SELECT Tiva_rec" + std::string(kRates) + "Tiva_Id = " +
                                      sql::Number(std::int64_t{Id()}));
  const auto twin = Database().Execute("SELECT TOP 1 Tiva_rec" + std::string(kRates) + kSurcharged + twin_);
  const double charged = own->Eof() ? 0 : own->Field(0).NumberOr(0);
  return {twin->Eof() ? charged : twin->Field(0).NumberOr(0), charged > 0};
}

void TaxRateForm::Fill() {
  RecordForm::Fill();
  if (IsNew()) return;
  twin_ = OfTwin();
  surcharge_ = ReadSurcharge();
  Show(kSurcharge, Variant(surcharge_.percent));
  Show(kCharged, Variant(surcharge_.charged));
}

void TaxRateForm::FillNew() { Show(kSurcharge, Variant(0.0)); }

// As the kind's newest rate does.
void TaxRateForm::ProposeCharging() {
  if (!IsNew()) return;
  const auto newest = Database().Execute("SELECT TOP 1 Tiva_rec" + std::string(kRates) + kGeneral + "tiva_art = " +
                                         sql::WholeNumber(Plain(kKind)) + " ORDER BY Tiva_Fecha DESC");
  Show(kCharged, Variant(!newest->Eof() && newest->Field(0).NumberOr(0) > 0));
}

std::vector<std::pair<std::string, std::int32_t>> TaxRateForm::Own() const { return {{"tiva_reg", 1}}; }

void TaxRateForm::StoreOwn() {
  RequireUnsold();
  RequireOnly();
  RequireNoSaleSince();
  const double surcharge = Amount(kSurcharge);
  Database().Execute("UPDATE zrcomun.dbo.tivas SET Tiva_rec = " + sql::Number(Plain(kCharged) == "1" ? surcharge : 0.0) +
                     " WHERE Tiva_Id = " + sql::Number(std::int64_t{Id()}));
  if (!twin_.empty()) Database().Execute("DELETE" + std::string(kRates) + kSurcharged + twin_);
  sql::InsertRow(Database(), "zrcomun.dbo.tivas", "Tiva_iva, Tiva_rec, tiva_reg, tiva_art, Tiva_Fecha",
                 {Amount(kRate), surcharge, 2, Whole(kKind), Variant(Plain(kFrom)).ToDate()});
}

void TaxRateForm::RequireUnsold() {
  if (twin_.empty()) return;
  if (ReadSurcharge() != surcharge_) {
    throw FieldFault("", "Otro puesto ha cambiado estos datos mientras tanto. Salga y vuelva a abrirlos");
  }
  if (Database().Execute("SELECT TOP 1 Lav_Id FROM Lav WHERE Lav_Tiva = " + sql::Number(std::int64_t{Id()}))->Eof()) {
    return;
  }
  throw FieldFault("", "Ya hay ventas con este tipo y no se puede cambiar: dé de alta el nuevo, desde su día");
}

void TaxRateForm::RequireOnly() {
  const auto other = Database().Execute("SELECT TOP 1 Tiva_Id" + std::string(kRates) + kGeneral + OfTwin() +
                                        " AND Tiva_Id <> " + sql::Number(std::int64_t{Id()}));
  if (!other->Eof()) throw FieldFault(kFrom, "esa clase ya tiene un tipo desde ese día");
}

// From its day on every sale is with it, also those that are stored.
void TaxRateForm::RequireNoSaleSince() {
  const auto sale = Database().Execute(
      "SELECT TOP 1 Cav_Fecha FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id INNER JOIN zrcomun.dbo.tivas ON "
      "Tiva_Id = Lav_Tiva WHERE Cav_Fecha >= '" + sql::DateText(Plain(kFrom)) + "' AND tiva_art = " +
      sql::WholeNumber(Plain(kKind)) + " ORDER BY Cav_Fecha DESC");
  if (sale->Eof()) return;
  throw FieldFault(kFrom, "hay ventas de esa clase hasta el " + ToDayFirst(sale->Field(0).ToDate()) +
                              "; se admite un día posterior");
}

}  // namespace tpv::office
