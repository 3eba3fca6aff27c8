// The value that crosses every late-bound boundary: fields of record sets,
// properties and arguments of objects created by name, members of the facade.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "base/date_time.h"

namespace tpv {

class Object;  // platform/objects.h

// Fixed-point money with 4 decimals, as the store keeps it.
struct Money {
  std::int64_t ten_thousandths = 0;

  static Money FromDouble(double euros);  // rounds half away from zero
  double ToDouble() const { return static_cast<double>(ten_thousandths) / 10000.0; }
  bool operator==(const Money&) const = default;
};

// A conversion that does not fit. The text is Spanish and names the value; the
// caller that knows a member's name adds it (see WithMember).
class ConversionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ConversionError WithMember(std::string_view member) const;
};

class Variant {
 public:
  using ObjectRef = std::shared_ptr<Object>;

  Variant() = default;  // null
  Variant(bool value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(std::int64_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Money value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(const DateTime& value) : value_(value) {}
  Variant(ObjectRef value) : value_(std::move(value)) {}
  template <typename T>
    requires std::is_pointer_v<T>
  Variant(T) = delete;  // a pointer would quietly become true

  bool IsNull() const { return std::holds_alternative<std::monostate>(value_); }
  bool IsBool() const { return std::holds_alternative<bool>(value_); }
  bool IsInteger() const;  // 16, 32 or 64 bits
  bool IsDouble() const { return std::holds_alternative<double>(value_); }
  bool IsMoney() const { return std::holds_alternative<Money>(value_); }
  bool IsNumber() const { return IsBool() || IsInteger() || IsDouble() || IsMoney(); }
  bool IsText() const { return std::holds_alternative<std::string>(value_); }
  bool IsDate() const { return std::holds_alternative<DateTime>(value_); }
  bool IsObject() const { return std::holds_alternative<ObjectRef>(value_); }

  // Strict conversions. Null, a text that is no number, a fraction where a
  // whole number is asked and a value out of range throw ConversionError.
  // True is 1. Texts are read as Spanish numbers ("1.234,50", "12,5"), or with
  // a point when they hold no comma ("12.50"), dates day first.
  bool ToBool() const;
  std::int16_t ToInt16() const;
  std::int32_t ToInt32() const;
  std::int64_t ToInt64() const;
  double ToDouble() const;
  Money ToMoney() const;
  DateTime ToDate() const;
  const ObjectRef& ToObject() const;

  // The text an operator would see: "" for null, decimal comma, no trailing
  // zeros, "True"/"False", "dd/mm/yyyy hh:mm:ss" (without a midnight time).
  std::string ToText() const;

  // The text that it holds, null when it holds something else.
  const std::string* HeldText() const { return std::get_if<std::string>(&value_); }

  // The text a technician reads: "NULL", decimal point, 15 digits, no trailing
  // zeros, bit as 1/0, "YYYY-MM-DD HH:MM:SS".
  std::string ToPlainText() const;

  // The forgiving readings that screens use for fields of rows.
  double NumberOr(double if_null) const { return IsNull() ? if_null : ToDouble(); }
  std::int32_t IntOr(std::int32_t if_null) const { return IsNull() ? if_null : ToInt32(); }
  std::string TextOr(std::string_view if_null) const& {
    return IsNull() ? std::string(if_null) : ToText();
  }
  std::string TextOr(std::string_view if_null) && {
    if (auto* text = std::get_if<std::string>(&value_)) return std::move(*text);
    return IsNull() ? std::string(if_null) : ToText();
  }

  bool operator==(const Variant&) const = default;

 private:
  std::variant<std::monostate, bool, std::int16_t, std::int32_t, std::int64_t, double, Money,
               std::string, DateTime, ObjectRef>
      value_;
};

}  // namespace tpv
