// The shop's articles as the office lists them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class ArticleList : public RecordList {
 public:
  explicit ArticleList(Context& context);

 protected:
  ui::PackedRows Rows() override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
};

}  // namespace tpv::office
