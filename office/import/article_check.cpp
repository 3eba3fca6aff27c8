#include "office/import/article_check.h"

#include <cmath>

#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/decimals.h"
#include "office/bar_code.h"
#include "office/price.h"
#include "office/shop_parameters.h"

namespace tpv::office {

namespace {

enum : std::size_t { kCode, kBarCode, kDescription, kPrice, kTaxKind, kHome };

constexpr double kLargest = 99'999'999;  // units, euros

class Check {
 public:
  Check(const ArticleShop& shop, const ImportFile& file, const TableRow& row, Findings& findings)
      : shop_(shop), file_(file), row_(row), findings_(findings) {
    static_cast<WantedRecord&>(wanted_) = ReadRecord(ArticleFields(), file, row, findings);
    wanted_.price_with_tax = Amount(kPriceWithTax);
    wanted_.stock = Amount(kStock);
  }

  WantedArticle Against(const StoredArticles& stored, const StoredRecord*& article) {
    if (Trim(file_.heading.Cell(row_, Name(kCode))).empty()) Refuse(kCode, "falta");
    const auto& found = stored.OfCode(FoldKey(file_.heading.Cell(row_, Name(kCode))));
    if (found.size() > 1) Refuse(kCode, "la tienda tiene varios artículos con este código");
    article_ = article = found.empty() ? nullptr : found[0];
    if (article_ != nullptr) wanted_.values[kCode] = article_->values[kCode];  // whatever its case
    if (wanted_.refused) return std::move(wanted_);
    CheckOwners(stored);
    CheckTexts(ArticleFields(), wanted_, article_, findings_);
    CheckCompleteness();
    CheckNumbers();
    if (!wanted_.refused && wanted_.price_with_tax) TakePriceWithTax();
    return std::move(wanted_);
  }

 private:
  static const char* Name(std::size_t field) { return ArticleFields()[field].name; }
  bool New(std::size_t field) const { return IsNew(wanted_, article_, field); }
  const std::optional<std::string>& Value(std::size_t field) const { return wanted_.values[field]; }

  void Refuse(const char* field, const std::string& reason) {
    findings_.Refuse(row_.line, field, reason);
    wanted_.refused = true;
  }
  void Refuse(std::size_t field, const std::string& reason) { Refuse(Name(field), reason); }

  std::optional<double> Amount(const char* column) {
    const std::string& cell = file_.heading.Cell(row_, column);
    if (Trim(cell).empty()) return std::nullopt;
    std::string reason;
    const auto amount = file_.mark.Read(cell, reason);
    if (!amount) Refuse(column, reason);
    return amount;
  }

  // Neither a code nor a bar code is another article's.
  void CheckOwners(const StoredArticles& stored) {
    for (const std::size_t field : {kCode, kBarCode}) {
      if (!New(field) || Trim(*Value(field)).empty()) continue;
      const std::string owner = OtherOwner(stored, *Value(field), article_ != nullptr ? article_->id : 0);
      if (!owner.empty()) Refuse(field, owner);
    }
    if (!New(kBarCode) || Trim(*Value(kBarCode)).empty()) return;
    const std::string fault = BarCodeFault(*Value(kBarCode));
    if (!fault.empty()) Refuse(kBarCode, fault);
  }

  void CheckCompleteness() {
    const bool added = article_ == nullptr;
    if (Value(kDescription) ? Trim(*Value(kDescription)).empty() : added)
      Refuse(kDescription, "falta");
    if (added && !Value(kPrice) && !wanted_.price_with_tax) Refuse(kPrice, "falta el precio");
    if (added && !Value(kTaxKind)) Refuse(kTaxKind, "falta");
    if (added && !Value(kHome) && shop_.warehouse != 0) {
      wanted_.values[kHome] = std::to_string(shop_.warehouse);
    }
  }

  void CheckNumbers() {
    if (New(kPrice) && !IsPrice(NumberOf(*Value(kPrice)))) Refuse(kPrice, kNoPrice);
    if (wanted_.price_with_tax && !IsPrice(*wanted_.price_with_tax))
      Refuse(kPriceWithTax, kNoPrice);
    if (Value(kTaxKind)) TakeTaxKind();
    if (New(kHome) && !shop_.warehouses.contains(Int32OrZero(*Value(kHome)))) {
      Refuse(kHome, "no hay ningún almacén con ese número");
    }
    if (!wanted_.stock) return;
    if (std::fabs(*wanted_.stock) > kLargest)
      Refuse(kStock, "las existencias son demasiado grandes");
    if (shop_.warehouse == 0) Refuse(kStock, "la tienda no tiene almacén en sus parámetros");
  }

  static constexpr const char* kNoPrice = "un precio va de 0 a 99999999";
  static bool IsPrice(double price) { return price >= 0 && price <= kLargest; }

  // A kind's number, or its rate where a "%" says so.
  void TakeTaxKind() {
    std::optional<std::string>& kind = wanted_.values[kTaxKind];
    const bool rate = file_.heading.Cell(row_, Name(kTaxKind)).find('%') != std::string::npos;
    std::string kinds;
    std::string fitting;
    int fits = 0;
    for (const auto& [number, tax] : shop_.taxes) {
      AddWord(kinds, std::to_string(number) + " (" + ToSpanish(tax.rate) + " %)");
      if (*kind != (rate ? ToPlain(tax.rate) : std::to_string(number))) continue;
      fitting = std::to_string(number);
      ++fits;
    }
    if (fits == 1) {
      kind = fitting;
    } else if (New(kTaxKind)) {
      Refuse(kTaxKind,
             (fits == 0 ? "no es un tipo vigente; hay " : "lo tienen varios tipos; hay ") + kinds);
    }
  }

  void TakePriceWithTax() {
    const double typed = *wanted_.price_with_tax;
    if (RoundHalfAway(typed, 2) != typed)
      return Refuse(kPriceWithTax, "un precio con IVA tiene dos decimales");
    const int kind = Int32OrZero(Value(kTaxKind) ? *Value(kTaxKind) : article_->values[kTaxKind]);
    const auto tax = shop_.taxes.find(kind);
    if (tax == shop_.taxes.end())
      return Refuse(kTaxKind, "el artículo no tiene un tipo de IVA vigente");
    if (article_ != nullptr && !article_->values[kPrice].empty()) {
      const double stored = RoundHalfAway(NumberOf(article_->values[kPrice]), shop_.price_decimals);
      if (SameCents(PriceWithTax(stored, tax->second), typed)) return;
    }
    const auto net = NetThatRings(typed, tax->second, shop_.price_decimals);
    if (!net) {
      return Refuse(kPriceWithTax,
                    "con " + std::to_string(shop_.price_decimals) +
                        " decimales de precio no se puede cobrar exactamente; hacen falta " +
                        std::to_string(kNewShopPriceDecimals));
    }
    wanted_.values[kPrice] = ToPlain(*net);
  }

  const ArticleShop& shop_;
  const ImportFile& file_;
  const TableRow& row_;
  Findings& findings_;
  WantedArticle wanted_;
  const StoredRecord* article_ = nullptr;
};

}  // namespace

ArticleShop ReadArticleShop(Connection& connection) {
  const ShopParameters shop = ReadShopParameters(connection);
  return {shop.price_decimals, shop.warehouse.value_or(0), TaxKindsToday(connection),
          ReadWarehouses(connection)};
}

WantedArticle ReadArticle(const ArticleShop& shop, const ImportFile& file, const TableRow& row,
                          const StoredArticles& stored, const StoredRecord*& article,
                          Findings& findings) {
  return Check(shop, file, row, findings).Against(stored, article);
}

}  // namespace tpv::office
