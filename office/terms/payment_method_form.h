// A payment method: its name, what it asks of the customer, and its due dates.
#pragma once

#include "office/forms/record_form.h"
#include "office/terms/due_parts.h"

namespace tpv::office {

class PaymentMethodForm : public RecordForm {
 public:
  PaymentMethodForm(Context& context, std::int32_t id);

 protected:
  void Fill() override;
  void FillNew() override;
  void Check() override;
  void StoreOwn() override;

 private:
  // What of a method lies in other tables.
  struct Terms {
    std::int32_t needs = 0;  // Fcol_Mod
    std::vector<DuePart> parts;
    bool operator==(const Terms&) const = default;
  };
  Terms Read();
  Terms Typed() const;
  void CheckDays() const;
  void CheckShares() const;

  // When the form opened, as stored and as shown; of a new one with nothing in them.
  Terms read_;
  Terms shown_;
};

}  // namespace tpv::office
