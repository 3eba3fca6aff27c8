// ZRARTICULOS.ZRArtic: finding an article by name.
#pragma once

#include <memory>
#include <set>

#include "data/tax_kinds.h"
#include "suite/late_bound.h"

namespace tpv {
class DatabaseObject;
class Recordset;
namespace ui {
class FrontEnd;
class PackedRows;
}
}  // namespace tpv

namespace tpv::suite {

// Articles by description: id, code, description, bar code, price
// with today's tax, units in the shop's own warehouse (null without).
class ArticleReader {
 public:
  // Begins to read all but those. Throws DatabaseError, as reading on does.
  explicit ArticleReader(DatabaseObject& store, std::set<std::int32_t> left_out = {});
  // Adds the next ones; false when there are no more.
  bool ReadOn(ui::PackedRows& articles);

 private:
  std::unique_ptr<Recordset> rows_;
  TaxKinds taxes_;
  int decimals_;
  std::set<std::int32_t> left_out_;
};

class ArticleSearch : public LateBound {
 public:
  explicit ArticleSearch(ui::FrontEnd& front_end);

 private:
  Variant Search();

  ui::FrontEnd& front_end_;
};

}  // namespace tpv::suite
