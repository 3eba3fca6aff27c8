#include "suite/article_search.h"

#include <set>

#include "base/mask.h"
#include "base/rounding.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "data/tax_kinds.h"
#include "platform/database.h"
#include "platform/ui/front_end.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {

constexpr const char* kClass = "ZRARTICULOS.ZRArtic";
constexpr int kUsualDecimals = 2;

// With the stock of the shop's own warehouse; a shop without one has no stock.
std::string Statement(DatabaseObject& store) {
  return "SELECT art_id,ART_Cod,art_des,ART_BARCODE,art_pve,art_tiva,"
         "(SELECT SUM(exis_uni) FROM Exis WHERE exis_idart = art_id AND exis_idalma = " +
         sql::Number(std::int64_t{store.Parametro("Par_Alma").IntOr(0)}) +
         ") AS Existencias FROM ART ORDER BY art_des";
}

ui::SearchRequest Request(DatabaseObject& store) {
  ui::SearchRequest request;
  request.title = "Buscar artículos por nombre";
  request.captions = {"Codigo", "Articulo", "Codigo de barras", "Precio", "Existencias"};
  request.widths = {1500, 5500, 2000, 1200, 1200};
  request.shown_columns = {1, 2, 3, 4, 5};
  request.search_column = 2;
  const int decimals = store.Parametro("par_deccan").IntOr(kUsualDecimals);
  request.masks = {"", "", "", "#,##0.00", MaskWithDecimals("#,##0.", decimals)};
  return request;
}

}  // namespace

std::vector<std::vector<Variant>> ReadArticles(DatabaseObject& store) {
  std::vector<std::vector<Variant>> articles;
  const TaxKinds taxes = TaxKindsToday(store.Conexion());
  const int decimals = store.Parametro("par_decpre").IntOr(kUsualDecimals);
  const auto rows = store.Conexion().Execute(Statement(store));
  for (; !rows->Eof(); rows->MoveNext()) {
    Pulse();
    const auto tax = taxes.find(rows->Field(5).IntOr(0));
    const double net = RoundHalfAway(rows->Field(4).NumberOr(0), decimals);
    const double price = PriceWithTax(net, tax == taxes.end() ? Tax() : tax->second);
    articles.push_back({rows->Field(0), rows->Field(1), rows->Field(2), rows->Field(3), Variant(price),
                        rows->Field(6)});
  }
  return articles;
}

ArticleSearch::ArticleSearch(ui::FrontEnd& front_end) : LateBound(kClass), front_end_(front_end) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Whole, {"ResultadoBusqueda"});
  Define("ZRBuscar", 0, 0, [this](auto) { return Search(); });
}

Variant ArticleSearch::Search() {
  DatabaseObject& store = DatabaseOf(*this, kClass);
  ui::SearchRequest request = Request(store);
  Set("ResultadoBusqueda", Variant(0));
  try {
    ui::LongWork work(front_end_, request.title);
    work.Stage("Leyendo los artículos");
    request.rows = ReadArticles(store);
    const std::set<std::int32_t> retired = RetiredOf(store.Conexion(), "ART");
    std::erase_if(request.rows, [&](const auto& row) { return retired.contains(row[0].ToInt32()); });
  } catch (const GivenUp&) {
    return {};
  }
  const auto chosen = front_end_.Search(request);
  if (chosen) Set("ResultadoBusqueda", request.rows[*chosen][0]);
  return {};
}

}  // namespace tpv::suite
