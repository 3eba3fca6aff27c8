// The shop's sellers: what the office shows and changes of them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class SellerList : public RecordList {
 public:
  explicit SellerList(Context& context);

 protected:
  std::string Statement() const override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
  std::string Kept(std::int32_t id) override;
};

}  // namespace tpv::office
