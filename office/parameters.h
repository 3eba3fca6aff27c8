// The shop's parameters: all that the tills read of it, each with what it does.
#pragma once

#include "office/forms/record_form.h"

namespace tpv::office {

class ParametersForm : public RecordForm {
 public:
  explicit ParametersForm(Context& context);

 protected:
  void Fill() override;
  void Check() override;
  void StoreOwn() override;

 private:
  void CheckShop() const;
  void CheckDrawer() const;
  void CheckDecimals();

  int price_decimals_ = 2;  // when the form opened
};

}  // namespace tpv::office
