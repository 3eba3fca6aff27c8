#include "suite/article_search.h"

#include "base/mask.h"
#include "base/rounding.h"
#include "data/retired.h"
#include "data/sql_text.h"
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

ArticleReader::ArticleReader(DatabaseObject& store, std::set<std::int32_t> left_out)
    : taxes_(TaxKindsToday(store.Conexion())),
      decimals_(store.Parametro("par_decpre").IntOr(kUsualDecimals)),
      left_out_(std::move(left_out)) {
  rows_ = store.Conexion().Execute(Statement(store));
}

bool ArticleReader::ReadOn(ui::PackedRows& articles) {
  constexpr std::size_t kAtOnce = 200;
  for (std::size_t read = 0; read < kAtOnce && !rows_->Eof(); ++read, rows_->MoveNext()) {
    Pulse();
    std::vector<Variant> article = rows_->Fields();
    if (left_out_.contains(article[0].ToInt32())) continue;
    const auto tax = taxes_.find(article[5].IntOr(0));
    const double net = RoundHalfAway(article[4].NumberOr(0), decimals_);
    article[4] = Variant(PriceWithTax(net, tax == taxes_.end() ? Tax() : tax->second));
    article[5] = std::move(article[6]);
    article.pop_back();
    articles.push_back(article);
  }
  return !rows_->Eof();
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
  std::unique_ptr<ArticleReader> reader;
  try {
    ui::LongWork work(front_end_, request.title);
    work.Stage("Leyendo los artículos");
    reader = std::make_unique<ArticleReader>(store, RetiredOf(store.Conexion(), "ART"));
    if (reader->ReadOn(request.rows)) request.read_on = [&] { return reader->ReadOn(request.rows); };
  } catch (const GivenUp&) {
    return {};
  }
  const auto chosen = front_end_.Search(request);
  if (chosen) Set("ResultadoBusqueda", request.rows[*chosen][0]);
  return {};
}

}  // namespace tpv::suite
