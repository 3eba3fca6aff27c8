// The shop's warehouses: what the office shows and changes of them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class WarehouseList : public RecordList {
 public:
  explicit WarehouseList(Context& context);

 protected:
  std::string Statement() const override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
  std::string Kept(std::int32_t id) override;
};

}  // namespace tpv::office
