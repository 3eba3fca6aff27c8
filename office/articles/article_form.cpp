#include "office/articles/article_form.h"

#include "base/rounding.h"
#include "context/context.h"
#include "data/decimals.h"
#include "data/sql_text.h"
#include "office/articles/tax_entries.h"
#include "office/bar_code.h"
#include "office/import/stored_articles.h"
#include "office/price.h"
#include "office/warehouses.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr const char* kCode = "ART_Cod";
constexpr const char* kBarCode = "ART_BARCODE";
constexpr const char* kTaxKind = "art_tiva";
constexpr const char* kHome = "art_alma";
constexpr const char* kWithTax = "con_iva";
constexpr const char* kWithout = "art_pve";
constexpr const char* kUnits = "unidades";

constexpr FormField kFields[] = {
    {.column = kCode, .caption = "Código", .asks = Asks::Text, .width = 20,
     .help = "El que se teclea en la venta. Ningún otro artículo lo tiene, ni como código de barras.",
     .required = true},
    {.column = kBarCode, .caption = "Código de barras", .asks = Asks::Text, .width = 20,
     .help = "El que lee el lector: léalo aquí. Vacío si el artículo no tiene.", .beside = true},
    {.column = "art_des", .caption = "Descripción", .asks = Asks::Text, .width = 100,
     .help = "Como sale en el ticket, en las búsquedas y en las etiquetas.", .required = true},
    {.column = kTaxKind, .caption = "IVA", .asks = Asks::Choice, .width = 24,
     .help = "El tipo de hoy. Si un tipo cambia, cada venta lleva el de su día.", .required = true},
    {.column = kWithTax, .caption = "Precio con IVA", .asks = Asks::Amount, .width = 12,
     .help = "Lo que paga el cliente. El precio sin IVA se calcula para que en caja salga exactamente este.",
     .required = true, .beside = true},
    {.column = kWithout, .caption = "Precio sin IVA", .asks = Asks::Amount, .width = 14,
     .help = "En vez del precio con IVA: al salir del campo se ve lo que pagará el cliente.", .beside = true},
    {.column = kHome, .caption = "Almacén", .asks = Asks::Choice, .width = 24,
     .help = "Donde se guarda el artículo; vacío si da igual."},
    {.column = kUnits, .caption = "Existencias", .asks = Asks::Amount, .width = 12,
     .help = "Las que hay en el almacén de las ventas. Para ajustarlas, escriba las que ha contado: lo que se "
             "venda mientras tanto se descuenta igual.",
     .least = -99'999'999, .beside = true},
};

constexpr RecordTable kArticle{"ART", "art_id", "Artículo", kFields};

}  // namespace

ArticleForm::ArticleForm(Context& context, std::int32_t id) : RecordForm(context, "frmArticulo", kArticle, id) {
  ControlOf(kWithTax).left = [this] { TakePriceWithTax(); };
  ControlOf(kWithout).left = [this] { TakePriceWithoutTax(); };
  dynamic_cast<ui::ComboBox&>(ControlOf(kTaxKind)).changed = [this] { TakePriceWithTax(); };
}

void ArticleForm::Fill() {
  shop_ = ReadShopParameters(Database());
  taxes_ = TaxKindsToday(Database());
  Offer(kTaxKind, TaxEntries(taxes_));
  Offer(kHome, WarehouseEntries(Database()));
  RecordForm::Fill();
  TakePriceWithoutTax();
  ShowStock();
}

void ArticleForm::FillNew() {
  if (!taxes_.empty()) Show(kTaxKind, Variant(taxes_.begin()->first));
  if (shop_.warehouse) Show(kHome, Variant(*shop_.warehouse));
}

const Tax* ArticleForm::ChosenTax() const {
  const auto tax = taxes_.find(Whole(kTaxKind));
  return tax == taxes_.end() ? nullptr : &tax->second;
}

// Whether the price without tax comes to that with tax on the sale screen.
bool ArticleForm::Rings(double price_with_tax) const {
  const Tax* tax = ChosenTax();
  if (tax == nullptr || Plain(kWithout).empty()) return false;
  return SameCents(PriceWithTax(RoundHalfAway(Amount(kWithout), shop_.price_decimals), *tax), price_with_tax);
}

void ArticleForm::TakePriceWithTax() {
  if (Plain(kWithTax).empty() || ChosenTax() == nullptr || Rings(Amount(kWithTax))) return;
  const auto net = NetThatRings(Amount(kWithTax), *ChosenTax(), shop_.price_decimals);
  Show(kWithout, net ? Variant(*net) : Variant());
}

void ArticleForm::TakePriceWithoutTax() {
  const bool agree = !Plain(kWithTax).empty() && Rings(Amount(kWithTax));
  if (Plain(kWithout).empty() || ChosenTax() == nullptr || agree) return;
  Show(kWithTax, Variant(PriceWithTax(RoundHalfAway(Amount(kWithout), shop_.price_decimals), *ChosenTax())));
}

void ArticleForm::CheckPrice() const {
  const double typed = Amount(kWithTax);
  if (RoundHalfAway(typed, 2) != typed) throw FieldFault(kWithTax, "un precio con IVA tiene dos decimales");
  if (!Rings(typed)) {
    throw FieldFault(kWithTax, "con " + std::to_string(shop_.price_decimals) +
                                   " decimales de precio no se puede cobrar exactamente; hacen falta " +
                                   std::to_string(kNewShopPriceDecimals) + " (parámetros)");
  }
  const double net = Amount(kWithout);
  if (IsChanged(kWithout) && RoundHalfAway(net, shop_.price_decimals) != net) {
    throw FieldFault(kWithout, "se admiten " + std::to_string(shop_.price_decimals) + " decimales");
  }
}

void ArticleForm::Check() {
  CheckPrice();
  const std::string bar_code = Plain(kBarCode);
  const std::string fault = IsChanged(kBarCode) && !bar_code.empty() ? BarCodeFault(bar_code) : std::string();
  if (!fault.empty()) throw FieldFault(kBarCode, fault);
  if (IsChanged(kUnits) && Plain(kUnits).empty()) throw FieldFault(kUnits, "escriba las unidades que hay");
}

// The record is written by now, so that of all others there are is known.
void ArticleForm::StoreOwn() {
  for (const char* field : {kCode, kBarCode}) {
    if (Plain(field).empty() || !IsChanged(field)) continue;
    const StoredArticles stored(Database(), {FoldKey(Plain(field))});
    const std::string owner = OtherOwner(stored, Plain(field), Id());
    if (!owner.empty()) throw FieldFault(field, owner);
  }
  if (IsChanged(kUnits)) AdjustStock();
}

void ArticleForm::ShowStock() {
  units_shown_ = 0;
  ControlOf(kUnits).enabled = shop_.warehouse.has_value();
  if (IsNew() || !shop_.warehouse) return;
  const Stocks stocks = ReadStocks(Database(), {Id()});
  const auto stock = stocks.find({Id(), *shop_.warehouse});
  if (stock == stocks.end()) return;
  units_shown_ = stock->second;
  Show(kUnits, Variant(units_shown_));
}

// By the difference: what was sold since the form opened stays taken off.
void ArticleForm::AdjustStock() {
  const std::string where = " WHERE exis_idart = " + sql::Number(std::int64_t{Id()}) +
                            " AND exis_idalma = " + sql::Number(std::int64_t{*shop_.warehouse});
  const double units = Amount(kUnits);
  const bool known = !Database().Execute("SELECT TOP 1 exis_uni FROM Exis" + where)->Eof();
  if (known) {
    Database().Execute("UPDATE Exis SET exis_uni = ISNULL(exis_uni, 0) + " + sql::Number(units - units_shown_) + where);
  } else {
    Database().Execute("INSERT INTO Exis (exis_idart, exis_idalma, exis_uni) VALUES (" +
                       sql::Number(std::int64_t{Id()}) + ", " + sql::Number(std::int64_t{*shop_.warehouse}) + ", " +
                       sql::Number(units - units_shown_) + ")");
  }
}

}  // namespace tpv::office
