// The form of an article: the price is typed with tax or without, and what is stored
// rings exactly what the form shows; the units are what the shop's warehouse has.
#pragma once

#include "data/tax_kinds.h"
#include "office/forms/record_form.h"
#include "office/shop_parameters.h"

namespace tpv::office {

class ArticleForm : public RecordForm {
 public:
  ArticleForm(Context& context, std::int32_t id);

 protected:
  void Fill() override;
  void FillNew() override;
  void Check() override;
  void StoreOwn() override;

 private:
  const Tax* ChosenTax() const;
  bool Rings(double price_with_tax) const;
  void TakePriceWithTax();
  void TakePriceWithoutTax();
  void CheckPrice() const;
  void ShowStock();
  void AdjustStock();

  ShopParameters shop_;
  TaxKinds taxes_;
  double units_shown_ = 0;
};

}  // namespace tpv::office
