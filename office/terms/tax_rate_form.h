// A VAT rate from a day on, with its equivalence surcharge. It lies in two rows of the
// catalogue: that of the general regime, which tills sell by, and that of the surcharge.
#pragma once

#include "office/forms/record_form.h"

namespace tpv::office {

class TaxRateForm : public RecordForm {
 public:
  // The id is that of the general regime's row.
  TaxRateForm(Context& context, std::int32_t id);

 protected:
  void Fill() override;
  void FillNew() override;
  std::vector<std::pair<std::string, std::int32_t>> Own() const override;
  void StoreOwn() override;

 private:
  void ProposeCharging();
  std::string OfTwin() const;
  struct Surcharge {
    double percent = 0;
    bool charged = false;  // on the sales too
    bool operator==(const Surcharge&) const = default;
  };
  Surcharge ReadSurcharge();
  void RequireOnly();
  void RequireUnsold();
  void RequireNoSaleSince();

  std::string twin_;  // the condition of the surcharge's row when the form opened; "" of a new rate
  Surcharge surcharge_;
};

}  // namespace tpv::office
