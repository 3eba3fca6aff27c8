// The shop's warehouses: what the office shows and changes of them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv {
class Connection;
}

namespace tpv::office {

// "1 - Tienda", of those in use: for a choice.
ui::Entries WarehouseEntries(Connection& connection);

class WarehouseList : public RecordList {
 public:
  explicit WarehouseList(Context& context);

 protected:
  std::string Statement() const override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
  std::string Kept(std::int32_t id) override;
};

}  // namespace tpv::office
