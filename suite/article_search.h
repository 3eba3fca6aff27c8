// ZRARTICULOS.ZRArtic: finding an article by name.
#pragma once

#include "suite/late_bound.h"

namespace tpv::ui {
class FrontEnd;
}

namespace tpv::suite {

class ArticleSearch : public LateBound {
 public:
  explicit ArticleSearch(ui::FrontEnd& front_end);

 private:
  Variant Search();

  ui::FrontEnd& front_end_;
};

}  // namespace tpv::suite
