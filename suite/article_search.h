// ZRARTICULOS.ZRArtic: finding an article by name.
#pragma once

#include <vector>

#include "suite/late_bound.h"

namespace tpv {
class DatabaseObject;
namespace ui {
class FrontEnd;
}
}  // namespace tpv

namespace tpv::suite {

// All articles by description: id, code, description, bar code, price with today's tax,
// units in the shop's own warehouse (null without). Throws DatabaseError.
std::vector<std::vector<Variant>> ReadArticles(DatabaseObject& store);

class ArticleSearch : public LateBound {
 public:
  explicit ArticleSearch(ui::FrontEnd& front_end);

 private:
  Variant Search();

  ui::FrontEnd& front_end_;
};

}  // namespace tpv::suite
