// The quick keys of the sale screen: which article lies on which page, and where.
#pragma once

#include "office/forms/record_list.h"

namespace tpv::office {

class QuickKeyList : public RecordList {
 public:
  explicit QuickKeyList(Context& context);

 protected:
  std::string Statement() const override;
  std::unique_ptr<RecordForm> FormOf(std::int32_t id) override;

 private:
  void Remove();

  ui::Button cmdQuitar{*this, "cmdQuitar", "&Quitar"};
};

}  // namespace tpv::office
