// The line being entered: article, units, price, discount.
#include <algorithm>
#include <cmath>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/scoped_value.h"
#include "data/retired.h"
#include "sale/sale_entry.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

namespace {

// What a line can come to, so that no sum of lines leaves the range of money.
constexpr double kLargestAmount = 99'999'999;  // units, euros
constexpr double kLargestDiscount = 1000;      // percent

}  // namespace

void SaleEntry::LeaveArticle() {
  const bool known = article_id_ != 0 && Text1[19].text == looked_up_code_;
  if (Text1[19].text.empty() || known || !sale_in_progress_) return;
  ArticleKey key;
  key.code = Text1[19].text;
  LookUpArticle(key);
}

bool SaleEntry::Quick() const {
  const Variant quick = Parameter("Par_Rapida");
  return !quick.IsNull() && quick.ToBool();
}

std::optional<Article> SaleEntry::Find(const ArticleKey& key, std::int32_t customer_id) {
  return FindArticle(context(), key, customer_id);
}

std::optional<Tax> SaleEntry::TaxOf(const Article& article) {
  return FindTax(context(), article.tax_class, SaleDate());
}

void SaleEntry::LookUpArticle(ArticleKey key) {
  if (key.Empty()) key.id = SearchArticle(context());
  if (key.Empty()) return;
  const auto weighed = Weighed(key.code);
  if (weighed) key.code = weighed->article;
  std::optional<Article> article;
  std::optional<Tax> tax;
  bool retired = false;
  bool quick = false;
  LineTerms terms;
  {
    const Snapshot snapshot(Database());
    article = Find(key, customer_ ? customer_->Id() : 0);
    if (article) tax = TaxOf(*article);
    // Goods that the shop sells no more may still be brought back.
    retired = article && !TakesGoodsBack() && IsRetired(context(), "ART", article->id);
    quick = Quick();
    terms = {PriceDecimals(), UnitDecimals(), Warehouse()};
  }
  price_decimals_ = terms.price_decimals;
  if (!article) return RefuseArticle("Codigo articulo inexistente");
  if (retired) return RefuseArticle("El articulo está retirado de la venta");
  if (!tax) return RefuseArticle("El articulo no tiene tipo de impuesto vigente");
  tax_ = *tax;
  TakeArticle(*article);
  if (weighed) TakeWeighed(*weighed);
  if (quick && edited_line_ == 0 && NumberOrZero(Text1[17].text) != 0) {
    looked_up_code_.clear();  // a line that is not stored is looked up again
    const ScopedValue known(terms_, std::optional(terms));
    StoreEnteredLine();
    return;
  }
  AwaitAcceptance();
  SetFocus(Text1[18]);
}

void SaleEntry::RefuseArticle(const std::string& text) {
  const ScopedValue sounds(scanning, true);
  article_id_ = 0;
  Text1[19].text.clear();
  Refuse(text, &Text1[19], Icon::Critical);
}

void SaleEntry::TakeArticle(const Article& article) {
  article_id_ = article.id;
  Text1[19].text = looked_up_code_ = article.code;
  Text1[18].text = article.description;
  Text1[7].text = article.discount;
  Text1[17].text = FormatNumber(PriceWithTax(article.net_price, tax_), "##,##0.00");
}

void SaleEntry::ReformatNumber(int index, int decimals) {
  std::string& text = Text1[index].text;
  if (text.empty()) text = "0";
  if (const auto number = ParseNumber(text)) {
    text = FormatNumber(*number, MaskWithDecimals("#,##0.", decimals));
  }
}

bool SaleEntry::AcceptLine() {
  if (NumberOrZero(Text1[17].text) == 0 && article_id_ != 0 &&
      !Confirm("El precio de venta es cero. Confirma la linea de venta", Icon::Exclamation,
               Answer::No)) {
    SetFocus(Text1[17]);
    return false;
  }
  return StoreEnteredLine();
}

bool SaleEntry::CheckLine() {
  if (article_id_ == 0) return Warn("No ha informado del articulo", &Text1[19]);
  if (Text1[21].text.empty() && edited_line_ == 0) {
    return Warn("No ha introducido las unidades", &Text1[21]);
  }
  const std::pair<int, const char*> numbers[] = {{21, "Las unidades no son un número válido"},
                                                 {17, "El precio no es un número válido"},
                                                 {7, "El descuento no es un número válido"}};
  for (const auto& [index, text] : numbers) {
    const std::string& field = Text1[index].text;
    if (!field.empty() && !ParseNumber(field)) return Warn(text, &Text1[index]);
  }
  const double units = std::fabs(NumberOrZero(Text1[21].text));
  const double price = std::fabs(NumberOrZero(Text1[17].text));
  const double discount = std::fabs(NumberOrZero(Text1[7].text));
  const bool too_large = std::max({units, price, units * price}) > kLargestAmount ||
                         discount > kLargestDiscount;
  return !too_large || Warn("Las unidades, el precio o el descuento son demasiado grandes", &Text1[21]);
}

// A slip of the keys must not give money away; goods brought back are below zero.
bool SaleEntry::ConfirmGivingAway(const SaleLine& line) {
  const bool over = NumberOrZero(line.discount) > 100;
  if (!over && (line.Amount() >= 0 || TakesGoodsBack())) return true;
  const char* question = over ? "El descuento pasa del 100 %. Confirma la linea de venta"
                              : "El importe de la linea es negativo. Confirma la linea de venta";
  if (Confirm(question, Icon::Exclamation, Answer::No)) return true;
  SetFocus(over ? Text1[7] : Text1[21]);
  return false;
}

// The fields stay as they are when the store refuses the line.
bool SaleEntry::StoreEnteredLine() {
  if (!CheckLine()) return false;
  SaleLine line;
  line.id = edited_line_;
  line.article_id = article_id_;
  line.article_code = Text1[19].text;
  line.tax_id = tax_.id;
  line.description = Text1[18].text;
  line.units = NumberOrZero(Text1[21].text);
  line.net_price = NetPrice(NumberOrZero(Text1[17].text), tax_.rate, price_decimals_);
  line.discount = Text1[7].text;
  line.warehouse = Warehouse();
  if (line.units != 0 && !ConfirmGivingAway(line)) return false;
  if (line.units != 0) {
    StoreLine(context(), line);
  } else if (edited_line_ != 0) {
    DeleteLine(context(), edited_line_);
  }
  ShowLinesAndTotals();
  SetFocus(Text1[19]);
  EmptyLine();
  return true;
}

void SaleEntry::Drop() {
  EmptyLine();
  SetFocus(Text1[19]);
}

void SaleEntry::EmptyLine() {
  Text1[21].text = FormatNumber(1, "0.00");
  for (const int index : {7, 17, 18, 19}) Text1[index].text.clear();
  edited_line_ = 0;
  article_id_ = 0;
}

}  // namespace tpv
