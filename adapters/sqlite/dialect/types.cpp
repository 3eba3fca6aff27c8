#include <algorithm>

#include "adapters/sqlite/dialect/printer.h"

namespace tpv::dialect {

SqlType TypeOf(const schema::Column& column) {
  switch (column.type) {
    case schema::Type::Int:
    case schema::Type::SmallInt:
      return SqlType::Int;
    case schema::Type::Bit:
      return SqlType::Bit;
    case schema::Type::Float:
      return SqlType::Float;
    case schema::Type::Money:
      return SqlType::Money;
    case schema::Type::Text:
      return SqlType::Text;
    default:
      return SqlType::DateTime;
  }
}

std::string Stored(const Printed& value, const schema::Column& column) {
  if (value.type == SqlType::Null) return value.text;
  const std::string name = ", '" + std::string(column.name) + "')";
  switch (column.type) {
    case schema::Type::Bit:
      return "tpv_bit(" + value.text + name;
    case schema::Type::Int:
      return "tpv_int(" + value.text + ", 2147483647" + name;
    case schema::Type::SmallInt:
      return "tpv_int(" + value.text + ", 32767" + name;
    case schema::Type::Float:
      return "tpv_float(" + value.text + ")";
    case schema::Type::Money:
      return "tpv_money(" + value.text + ")";
    case schema::Type::DateTime:
      return value.type == SqlType::DateTime ? value.text : "tpv_date(" + value.text + ")";
    default:
      return "tpv_text(" + value.text + ", " + std::to_string(column.length) + name;
  }
}

std::string ReadAs(const Printed& value, SqlType type) {
  if (value.type == type || value.type == SqlType::Null) return value.text;
  if (type == SqlType::DateTime) return "tpv_date(" + value.text + ")";
  if (value.type == SqlType::Text && type == SqlType::Money) return "tpv_money(" + value.text + ")";
  if (value.type == SqlType::Text) return "tpv_number(" + value.text + ")";
  return value.text;
}

}  // namespace tpv::dialect
