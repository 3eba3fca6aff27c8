// The prices and discounts that one customer has on single articles: what the sale screen
// takes in the place of the shop's.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class CustomerPriceList : public RecordList {
 public:
  CustomerPriceList(Context& context, std::int32_t customer_id, const std::string& customer);

 protected:
  std::string Statement() const override;
  ui::PackedRows Rows() override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;

 private:
  void Remove();

  const std::int32_t customer_id_;
  ui::Button cmdQuitar{*this, "cmdQuitar", "&Quitar"};
};

}  // namespace tpv::office
