#include "sale/article_lookup.h"

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "context/context.h"
#include "data/decimals.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "platform/objects.h"

namespace tpv {

namespace {

std::string Condition(const ArticleKey& key) {
  if (!key.bar_code.empty()) return ")  where ART_BARCODE=" + sql::Quoted(key.bar_code);
  if (key.code.empty()) return ") where ART_Id = " + sql::Number(std::int64_t{key.id});
  const std::string code = sql::Quoted(key.code);
  return ")  where ART_COD=" + code + " or art_barcode = " + code + " ";
}

std::string Statement(const ArticleKey& key, std::int32_t customer_id, bool with_retail_price) {
  const bool by_id = key.bar_code.empty() && key.code.empty();
  return std::string(
             "Select art_id,ART_Cod,art_des,art_pve,art_tiva,art_alma,alm_des,art_for,art_mat,"
             "ART_FAC,artcli_dto1,artcli_dto2,artcli_fijo") +
         (with_retail_price ? ",art_pvpi  " : "  ") +
         (by_id ? " From ART left join alm on art_alma = alm_id "
                : " from ART left join alm on art_alma = alm_id ") +
         "left join artcli on (art_id = artcli_idart and artcli_idcli=" +
         sql::Number(std::int64_t{customer_id}) + Condition(key);
}

std::optional<Tax> ReadTax(Context& context, std::int32_t tax_class, const std::string& bound) {
  const auto row = context.Database().Execute(
      "Select top 1 tiva_id,Tiva_iva,Tiva_REc from zrcomun.dbo.tivas where tiva_reg= 1 "
      " And tiva_art=" + sql::Number(std::int64_t{tax_class}) + bound +
      " Order by tiva_fecha desc");
  if (row->Eof()) return std::nullopt;
  return Tax{row->Field("Tiva_Id").ToInt32(), row->Field("Tiva_iva").NumberOr(0),
             row->Field("Tiva_rec").NumberOr(0)};
}

}  // namespace

std::optional<Article> FindArticle(Context& context, const ArticleKey& key,
                                   std::int32_t customer_id, bool with_retail_price) {
  const auto row = context.Database().Execute(Statement(key, customer_id, with_retail_price));
  if (row->Eof()) return std::nullopt;
  const int decimals = PriceDecimals(context);
  Article article;
  article.id = row->Field("art_id").ToInt32();
  article.code = row->Field("ART_Cod").TextOr("");
  article.description = row->Field("art_des").TextOr("");
  const Variant fixed = row->Field("artcli_fijo");
  const Variant& price = fixed.IsNull() ? row->Field("art_pve") : fixed;
  article.net_price = RoundHalfAway(price.NumberOr(0), decimals);
  const Variant discount = row->Field("artcli_dto1");
  article.discount =
      discount.IsNull() ? "0" : ToSpanish(RoundHalfAway(discount.ToDouble(), decimals));
  article.tax_class = row->Field("art_tiva").IntOr(0);
  return article;
}

std::optional<Tax> FindTax(Context& context, std::int32_t tax_class, const std::string& date) {
  const bool dated = ParseDayFirst(date).has_value();
  return ReadTax(context, tax_class, " AND Tiva_Fecha < = " +
                 (dated ? "'" + sql::DateText(date) + "'" : std::string(" Getdate()")));
}

std::optional<Tax> FindNewestTax(Context& context, std::int32_t tax_class) {
  return ReadTax(context, tax_class, "");
}

std::int32_t SearchArticle(Context& context) {
  const auto search = context.ports.objects.Create("ZRARTICULOS.ZRArtic");
  search->Put("MyBd", Variant(Variant::ObjectRef(context.MyBd)));
  search->Invoke("ZRBuscar");
  return search->Get("ResultadoBusqueda").IntOr(0);
}

}  // namespace tpv
