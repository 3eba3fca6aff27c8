// A customer's card: names, tax number, how he pays and his address.
#pragma once

#include "office/forms/record_form.h"
#include "office/people/customer_address.h"

namespace tpv::office {

class CustomerForm : public RecordForm {
 public:
  CustomerForm(Context& context, std::int32_t id);

 protected:
  void Fill() override;
  void FillNew() override;
  void Check() override;
  void StoreOwn() override;

 private:
  void OfferChoices();
  void CheckDocument();
  void CheckAccount() const;
  void CheckPostCode() const;
  bool IsSpanish() const;
  void RequireCounterCustomer();
  void StoreTradeName();
  CustomerAddress Typed() const;
  void StoreTypedAddress();

  CustomerAddress address_;  // when the card was filled
};

}  // namespace tpv::office
