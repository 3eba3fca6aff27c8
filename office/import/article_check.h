// What a file's article has to be before it is stored.
#pragma once

#include <set>

#include "data/tax_kinds.h"
#include "office/import/stored_articles.h"

namespace tpv::office {

// What the store says about all articles.
struct ArticleShop {
  int price_decimals = 2;
  std::int32_t warehouse = 0;  // whose stock is told; 0 for none
  TaxKinds taxes;
  std::set<int> warehouses;
};
ArticleShop ReadArticleShop(Connection& connection);

struct WantedArticle : WantedRecord {
  std::optional<double> price_with_tax;
  std::optional<double> stock;

  const std::string& code() const { return *values[0]; }
};

// Reads the row and refuses what is wrong with it. `article` becomes the stored one of
// its code, null when it is new. A price with tax has become a net price that rings it,
// or is left out where the stored one does.
WantedArticle ReadArticle(const ArticleShop& shop, const ImportFile& file, const TableRow& row,
                          const StoredArticles& stored, const StoredRecord*& article,
                          Findings& findings);

}  // namespace tpv::office
