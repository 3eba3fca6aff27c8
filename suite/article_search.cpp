#include "suite/article_search.h"

#include "platform/database.h"
#include "platform/ui/front_end.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {
constexpr const char* kClass = "ZRARTICULOS.ZRArtic";
}

ArticleSearch::ArticleSearch(ui::FrontEnd& front_end) : LateBound(kClass), front_end_(front_end) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Whole, {"ResultadoBusqueda"});
  Define("ZRBuscar", 0, 0, [this](auto) { return Search(); });
}

Variant ArticleSearch::Search() {
  ui::SearchRequest request;
  request.title = "Buscar artículos por nombre";
  request.captions = {"Codigo", "Articulo", "Codigo de barras"};
  request.widths = {1500, 5500, 2000};
  request.shown_columns = {1, 2, 3};
  request.search_column = 2;
  const auto rows = DatabaseOf(*this, kClass)
                        .Conexion()
                        .Execute("SELECT art_id,ART_Cod,art_des,ART_BARCODE FROM ART ORDER BY art_des");
  for (; !rows->Eof(); rows->MoveNext()) {
    request.rows.push_back({rows->Field(0), rows->Field(1), rows->Field(2), rows->Field(3)});
  }
  const auto chosen = front_end_.Search(request);
  Set("ResultadoBusqueda", Variant(chosen ? request.rows[*chosen][0].ToInt32() : 0));
  return {};
}

}  // namespace tpv::suite
