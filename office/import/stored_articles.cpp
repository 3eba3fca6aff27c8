#include "office/import/stored_articles.h"

#include <algorithm>

#include "office/import/sql_lists.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr std::size_t kCode = 0;
constexpr std::size_t kBarCode = 1;
constexpr std::size_t kAtOnce = 400;

}  // namespace

StoredArticles::StoredArticles(Connection& connection, const std::vector<std::string>& keys) {
  if (keys.empty()) return;
  const std::string list = TextList(keys);
  for (const char* column : {"ART_Cod", "ART_BARCODE"}) Read(connection, column, list);
}

void StoredArticles::Read(Connection& connection, const char* column, const std::string& keys) {
  const auto fields = ArticleFields();
  const auto rows = connection.Execute("SELECT art_id, " + ColumnsOf(fields, "ART") +
                                       " FROM ART WHERE " + column + " IN (" + keys + ")");
  for (; !rows->Eof(); rows->MoveNext()) {
    const auto [place, added] = articles_.try_emplace(rows->Field(0).ToInt32());
    if (!added) continue;
    StoredRecord& article = place->second;
    article.id = place->first;
    for (std::size_t i = 0; i < fields.size(); ++i)
      article.values.push_back(PlainValue(rows->Field(i + 1)));
    codes_[FoldKey(article.values[kCode])].push_back(&article);
    bar_codes_[FoldKey(article.values[kBarCode])].push_back(&article);
  }
}

const StoredArticles::Found& StoredArticles::Of(const Index& index, const std::string& folded) {
  static const Found kNone;
  const auto found = index.find(folded);
  return found == index.end() ? kNone : found->second;
}

std::vector<std::int64_t> StoredArticles::Ids() const {
  std::vector<std::int64_t> ids;
  for (const auto& [id, article] : articles_) ids.push_back(id);
  return ids;
}

std::string OtherOwner(const StoredArticles& stored, const std::string& key, std::int64_t own) {
  const std::string folded = FoldKey(key);
  const std::pair<const StoredArticles::Found&, const char*> owners[] = {
      {stored.OfBarCode(folded), "el código de barras"}, {stored.OfCode(folded), "el código"}};
  for (const auto& [found, what] : owners) {
    for (const StoredRecord* owner : found) {
      if (owner->id != own) return std::string("es ") + what + " del artículo " + owner->values[kCode];
    }
  }
  return {};
}

Stocks ReadStocks(Connection& connection, const std::vector<std::int64_t>& articles) {
  Stocks stocks;
  for (std::size_t first = 0; first < articles.size(); first += kAtOnce) {
    const auto begin = articles.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end =
        articles.begin() + static_cast<std::ptrdiff_t>(std::min(first + kAtOnce, articles.size()));
    const auto rows = connection.Execute(
        "SELECT exis_idart, exis_idalma, exis_uni FROM Exis WHERE exis_idart IN (" +
        NumberList({begin, end}) + ")");
    for (; !rows->Eof(); rows->MoveNext()) {
      stocks[{rows->Field(0).ToInt32(), rows->Field(1).ToInt32()}] = rows->Field(2).NumberOr(0);
    }
  }
  return stocks;
}

}  // namespace tpv::office
