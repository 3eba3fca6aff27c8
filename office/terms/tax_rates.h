// VAT rates with the day from which each holds. A rate that changes is a new one from a
// day on: what was sold keeps its own.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class TaxRateList : public RecordList {
 public:
  explicit TaxRateList(Context& context);

 protected:
  std::string Statement() const override;
  ui::PackedRows Rows() override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
};

}  // namespace tpv::office
