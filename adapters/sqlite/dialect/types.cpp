#include <algorithm>

#include "adapters/sqlite/dialect/printer.h"

namespace tpv::dialect {

namespace {

// Money becomes a whole number rounded, a float cut.
std::string Rounded(const Printed& value) {
  return value.type == SqlType::Money ? "tpv_round(" + value.text + ", 0)" : value.text;
}

// Whether all that the one column can hold fits into the other.
bool Fits(const schema::Column& from, const schema::Column& into) {
  const bool text = from.type == schema::Type::Text;
  return from.type == into.type && (!text || into.length == 0 || (from.length > 0 && from.length <= into.length));
}

}  // namespace

char TypeLetter(SqlType type) { return "nbifmtd"[static_cast<int>(type)]; }

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

SqlType Common(SqlType left, SqlType right) {
  if (left == SqlType::Null) return right;
  if (right == SqlType::Null) return left;
  for (const SqlType type :
       {SqlType::DateTime, SqlType::Float, SqlType::Money, SqlType::Int, SqlType::Bit}) {
    if (left == type || right == type) return type;
  }
  return SqlType::Text;
}

std::string Stored(const Printed& value, const schema::Column& column) {
  if (value.type == SqlType::Null) return value.text;
  if (value.column != nullptr && Fits(*value.column, column)) return value.text;
  const std::string name = ", '" + std::string(column.name) + "')";
  switch (column.type) {
    case schema::Type::Bit:
      return "tpv_bit(" + value.text + name;
    case schema::Type::Int:
      return "tpv_int(" + Rounded(value) + ", 2147483647" + name;
    case schema::Type::SmallInt:
      return "tpv_int(" + Rounded(value) + ", 32767" + name;
    case schema::Type::Float:
      return value.type == SqlType::Text || value.type == SqlType::DateTime
                 ? "tpv_float(" + value.text + ")"
                 : value.text;  // the column makes it a float
    case schema::Type::Money:
      return "tpv_money(" + value.text + ")";
    case schema::Type::DateTime:
      return ConvertedTo(value, SqlType::DateTime);
    default:
      return "tpv_text(" + ConvertedTo(value, SqlType::Text) + ", " + std::to_string(column.length) + name;
  }
}

std::string ReadAs(const Printed& value, SqlType type) {
  if (value.type == type || value.type == SqlType::Null) return value.text;
  const bool text = value.type == SqlType::Text;
  return text || type == SqlType::DateTime ? ConvertedTo(value, type) : value.text;
}

std::string ConvertedTo(const Printed& value, SqlType type) {
  if (value.type == type || value.type == SqlType::Null) return value.text;
  const bool whole = value.type == SqlType::Int || value.type == SqlType::Bit;
  switch (type) {
    case SqlType::Bit:
      return "tpv_bit(" + value.text + ", 'bit')";
    case SqlType::Int:
      return "tpv_int(" + Rounded(value) + ", 2147483647, 'int')";
    case SqlType::Float:
      return whole                            ? "CAST(" + value.text + " AS REAL)"
             : value.type == SqlType::Money ? value.text
                                              : "tpv_float(" + value.text + ")";
    case SqlType::Money:
      return "tpv_money(" + value.text + ")";
    case SqlType::DateTime:
      return "tpv_date(" + value.text + ")";
    default:
      return "tpv_string(" + value.text + ", '" + TypeLetter(value.type) + "', 0, 0)";
  }
}

}  // namespace tpv::dialect
