// Rows read whole, as an object that sibling components walk by name.
#pragma once

#include <string>
#include <vector>

#include "platform/objects.h"

namespace tpv {

// EOF, BOF and RecordCount; MoveFirst, MoveNext, and Fields(name) of the current
// row. It starts at the first row.
class KeptRows : public Object {
 public:
  using Rows = std::vector<std::vector<Variant>>;

  KeptRows(std::vector<std::string> fields, Rows rows);

  std::size_t Count() const { return rows_.size(); }

  Variant Get(std::string_view property) override;
  void Put(std::string_view property, const Variant& value) override;
  Variant Call(std::string_view method, std::span<Variant> arguments) override;

 private:
  Variant Field(std::string_view field) const;

  std::vector<std::string> fields_;
  Rows rows_;
  std::size_t current_ = 0;
};

}  // namespace tpv
