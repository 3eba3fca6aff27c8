// The shop's customers as the office lists them.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class CustomerList : public RecordList {
 public:
  explicit CustomerList(Context& context);

 protected:
  std::string Statement() const override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;
  std::string Kept(std::int32_t id) override;

 private:
  void ShowPrices();

  ui::Button cmdPrecios{*this, "cmdPrecios", "&Precios propios"};
};

}  // namespace tpv::office
