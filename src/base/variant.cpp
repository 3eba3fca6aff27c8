#include "base/variant.h"

#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/rounding.h"

namespace tpv {

namespace {

template <typename... Visitors>
struct Overloaded : Visitors... {
  using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

[[noreturn]] void Misfit(const Variant& value, const char* what) {
  throw ConversionError("«" + (value.IsNull() ? std::string("nulo") : value.ToText()) + "» no es " +
                        what);
}

std::int64_t WholeNumber(const Variant& value, std::int64_t lowest, std::int64_t highest,
                         const char* what) {
  const double number = value.ToDouble();
  const bool fits = number == std::trunc(number) && number >= static_cast<double>(lowest) &&
                    number <= static_cast<double>(highest);
  if (!fits) Misfit(value, what);
  return static_cast<std::int64_t>(number);
}

std::string DateText(const DateTime& value) {
  const bool midnight = value.hour == 0 && value.minute == 0 && value.second == 0;
  return midnight ? ToDayFirst(value) : ToDayFirstSeconds(value);
}

}  // namespace

Money Money::FromDouble(double euros) {
  if (!(std::fabs(euros) < 9e14)) {
    throw ConversionError("«" + ToSpanish(euros) + "» no cabe en un importe");
  }
  // Most amounts of a store have their four decimals already.
  const double scaled = euros * 10000;
  const double nearest = std::nearbyint(scaled);
  const bool whole = std::fabs(scaled) < 1e11 && std::fabs(scaled - nearest) < 1e-4;
  return Money{std::llround(whole ? nearest : RoundHalfAway(euros, 4) * 10000)};
}

ConversionError ConversionError::WithMember(std::string_view member) const {
  return ConversionError(std::string(member) + ": " + what());
}

bool Variant::IsInteger() const {
  return std::holds_alternative<std::int16_t>(value_) ||
         std::holds_alternative<std::int32_t>(value_) ||
         std::holds_alternative<std::int64_t>(value_);
}

double Variant::ToDouble() const {
  return std::visit(Overloaded{[](bool v) { return v ? 1.0 : 0.0; },
                               [](std::int16_t v) { return static_cast<double>(v); },
                               [](std::int32_t v) { return static_cast<double>(v); },
                               [](std::int64_t v) { return static_cast<double>(v); },
                               [](double v) { return v; }, [](Money v) { return v.ToDouble(); },
                               [this](const std::string& v) {
                                 const auto number = ParseNumber(v);
                                 if (!number) Misfit(*this, "un número");
                                 return *number;
                               },
                               [this](const auto&) -> double { Misfit(*this, "un número"); }},
                    value_);
}

bool Variant::ToBool() const {
  if (IsText()) {
    if (ToText() == "True") return true;
    if (ToText() == "False") return false;
  }
  return ToDouble() != 0;
}

std::int16_t Variant::ToInt16() const {
  return static_cast<std::int16_t>(WholeNumber(*this, -32768, 32767, "un entero de 16 bits"));
}

std::int32_t Variant::ToInt32() const {
  if (const auto* value = std::get_if<std::int32_t>(&value_)) return *value;
  return static_cast<std::int32_t>(WholeNumber(*this, std::numeric_limits<std::int32_t>::min(),
                                               std::numeric_limits<std::int32_t>::max(),
                                               "un entero de 32 bits"));
}

std::int64_t Variant::ToInt64() const {
  if (const auto* value = std::get_if<std::int64_t>(&value_)) return *value;
  constexpr std::int64_t kExact = std::int64_t{1} << 53;  // what a double holds exactly
  return WholeNumber(*this, -kExact, kExact, "un entero");
}

Money Variant::ToMoney() const {
  if (const auto* value = std::get_if<Money>(&value_)) return *value;
  return Money::FromDouble(ToDouble());
}

DateTime Variant::ToDate() const {
  if (const auto* value = std::get_if<DateTime>(&value_)) return *value;
  if (const auto* text = std::get_if<std::string>(&value_)) {
    if (const auto date = ParseDayFirst(*text)) return *date;
  }
  Misfit(*this, "una fecha");
}

const Variant::ObjectRef& Variant::ToObject() const {
  if (const auto* value = std::get_if<ObjectRef>(&value_)) return *value;
  Misfit(*this, "un objeto");
}

std::string Variant::ToText() const {
  return std::visit(Overloaded{[](std::monostate) { return std::string(); },
                               [](bool v) { return std::string(v ? "True" : "False"); },
                               [](double v) { return ToSpanish(v); },
                               [](Money v) { return ToSpanish(v.ToDouble()); },
                               [](const std::string& v) { return v; },
                               [](const DateTime& v) { return DateText(v); },
                               [](const ObjectRef&) { return std::string("(objeto)"); },
                               [](auto v) { return std::to_string(v); }},
                    value_);
}

std::string Variant::ToPlainText() const {
  return std::visit(
      Overloaded{[](std::monostate) { return std::string("NULL"); },
                 [](bool v) { return std::string(v ? "1" : "0"); },
                 [](double v) { return ToPlain(v); }, [](Money v) { return ToPlain(v.ToDouble()); },
                 [](const DateTime& v) { return ToIsoSeconds(v); },
                 [this](const auto&) { return ToText(); }},
      value_);
}

}  // namespace tpv
