// The columns of the shop's files and where each lies in the store.
#pragma once

#include <span>
#include <string>

#include "base/variant.h"

namespace tpv::office {

enum class FieldKind { Text, Whole, Number };

struct Field {
  const char* name;  // the file's heading
  const char* table;
  const char* column;
  FieldKind kind;
};

// The first is the key. Prices with tax and stocks are no columns of the article.
std::span<const Field> ArticleFields();
// The last ones are those of the customer's first address, table Dir.
std::span<const Field> CustomerFields();

inline constexpr const char* kPriceWithTax = "precio_con_iva";
inline constexpr const char* kStock = "existencias";
inline constexpr const char* kWarehouse = "almacen";

// A value as it is compared: "" for null, numbers with a point and 15 digits at most.
std::string PlainValue(const Variant& value);
// The number that a plain value is; 0 for "".
double NumberOf(const std::string& plain);
// What PlainValue gives, as SQL text of the same kind whatever the value, so that
// statements of many rows are alike: texts national, numbers with decimals. No number is NULL.
std::string Literal(const std::string& plain, FieldKind kind);
// Characters that the field's column takes; 0 when it is no text.
std::size_t MostCharacters(const Field& field);
// A number as files show it: decimal comma, and never three decimals, which could be
// read as thousands.
std::string FileNumber(double value);

}  // namespace tpv::office
