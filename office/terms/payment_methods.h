// The shop's payment methods as the office lists them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class PaymentMethodList : public RecordList {
 public:
  explicit PaymentMethodList(Context& context);

 protected:
  std::string Statement() const override;
  ui::PackedRows Rows() override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
  std::string Kept(std::int32_t id) override;
};

}  // namespace tpv::office
