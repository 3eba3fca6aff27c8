// The stored articles that a batch of a file's rows names.
#pragma once

#include <map>
#include <unordered_map>

#include "office/import/record.h"

namespace tpv {
class Connection;
}

namespace tpv::office {

class StoredArticles {
 public:
  using Found = std::vector<const StoredRecord*>;

  // Those with one of the codes or bar codes.
  StoredArticles(Connection& connection, const std::vector<std::string>& keys);

  // By FoldKey of a code; more than one where the store has a code twice.
  const Found& OfCode(const std::string& folded) const { return Of(codes_, folded); }
  const Found& OfBarCode(const std::string& folded) const { return Of(bar_codes_, folded); }
  std::vector<std::int64_t> Ids() const;

 private:
  using Index = std::unordered_map<std::string, Found>;

  static const Found& Of(const Index& index, const std::string& folded);
  void Read(Connection& connection, const char* column, const std::string& keys);

  std::map<std::int32_t, StoredRecord> articles_;
  Index codes_;
  Index bar_codes_;
};

// Whose the key is besides the article `own` (0 for a new one): "es el código del artículo
// 12"; "" when nobody's.
std::string OtherOwner(const StoredArticles& stored, const std::string& key, std::int64_t own);

// What warehouses have of articles: article and warehouse to units.
using Stocks = std::map<std::pair<std::int32_t, std::int32_t>, double>;
Stocks ReadStocks(Connection& connection, const std::vector<std::int64_t>& articles);

}  // namespace tpv::office
