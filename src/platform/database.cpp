#include "platform/database.h"

#include "base/text.h"

namespace tpv {

std::size_t Recordset::IndexOf(std::string_view name) const {
  for (std::size_t index = 0; index < FieldCount(); ++index) {
    if (EqualNoCase(FieldName(index), name)) return index;
  }
  throw DatabaseError("No existe el campo «" + std::string(name) + "»", "42S22");
}

}  // namespace tpv
