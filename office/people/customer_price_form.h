// One article's price and discount for one customer. The price is typed with tax, and what
// is stored rings exactly it.
#pragma once

#include "office/forms/record_form.h"

namespace tpv::office {

class CustomerPriceForm : public RecordForm {
 public:
  // `article_id` 0: an article that has none yet.
  CustomerPriceForm(Context& context, std::int32_t customer_id, std::int32_t article_id);

 protected:
  void Fill() override;
  void Check() override;
  void Store() override;

 private:
  // As stored: net, percent; "" for none (office/fields.h).
  struct Terms {
    std::string fixed;
    std::string discount;
    std::string second_discount;
    bool operator==(const Terms&) const = default;
  };
  std::string OfPair(std::int32_t article_id) const;
  Terms Read(std::int32_t article_id);
  std::int32_t TypedArticle();
  std::string TypedNet(std::int32_t article_id);

  const std::int32_t customer_id_;
  Terms read_;
};

}  // namespace tpv::office
