#include "platform/database.h"

#include "base/text.h"

namespace tpv {

std::vector<Variant> Recordset::Fields() const {
  std::vector<Variant> row;
  const std::size_t count = FieldCount();
  row.reserve(count);
  for (std::size_t index = 0; index < count; ++index) row.push_back(Field(index));
  return row;
}

// Most names are written as the store has them.
std::size_t Recordset::IndexOf(std::string_view name) const {
  const std::size_t count = FieldCount();
  for (std::size_t index = 0; index < count; ++index) {
    if (FieldName(index) == name) return index;
  }
  for (std::size_t index = 0; index < count; ++index) {
    if (EqualNoCase(FieldName(index), name)) return index;
  }
  throw DatabaseError("No existe el campo «" + std::string(name) + "»", "42S22");
}

}  // namespace tpv
