#include "office/articles/article_list.h"

#include "base/mask.h"
#include "data/decimals.h"
#include "office/articles/article_form.h"
#include "suite/article_search.h"

namespace tpv::office {

ArticleList::ArticleList(Context& context)
    : RecordList(context, {"frmArticulos",
                           "Artículos",
                           {{"Código", 1500},
                            {"Artículo", 5000},
                            {"Código de barras", 2000},
                            {"Precio con IVA", 1500, "#,##0.00"},
                            {"Existencias", 1300, MaskWithDecimals("#,##0.", UnitDecimals(context))}},
                           "ART"}) {}

ui::PackedRows ArticleList::Rows() {
  ui::PackedRows all;
  suite::ArticleReader reader(*context().MyBd);
  while (reader.ReadOn(all)) {
  }
  return all;
}

std::unique_ptr<RecordForm> ArticleList::FormOf(std::int32_t id) {
  return std::make_unique<ArticleForm>(context(), id);
}

}  // namespace tpv::office
