#include "suite/late_bound.h"

#include <algorithm>

namespace tpv::suite {

namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

Variant Initial(Kind kind) {
  switch (kind) {
    case Kind::Whole: return Variant(0);
    case Kind::Amount: return Variant(0.0);
    case Kind::Text: return Variant("");
    case Kind::Flag: return Variant(false);
    default: return {};
  }
}

}  // namespace

bool LateBound::NoCase::operator()(std::string_view left, std::string_view right) const {
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char a, char b) { return Lower(a) < Lower(b); });
}

void LateBound::Properties(Kind kind, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    properties_.insert_or_assign(std::string(name), Property{kind, Initial(kind)});
  }
}

void LateBound::Define(std::string_view name, std::size_t least, std::size_t most, Method method) {
  methods_.insert_or_assign(std::string(name), MethodEntry{least, most, std::move(method)});
}

LateBound::Property& LateBound::Find(std::string_view property) {
  const auto found = properties_.find(property);
  if (found == properties_.end()) {
    throw ObjectError(class_name_ + " no tiene la propiedad «" + std::string(property) + "»");
  }
  return found->second;
}

Variant LateBound::Checked(std::string_view property, Kind kind, const Variant& value) const {
  try {
    if (kind == Kind::Object) return value.IsNull() ? value : Variant(value.ToObject());
    if (value.IsNull()) return value;
    if (kind == Kind::Whole) return Variant(value.ToInt32());
    if (kind == Kind::Amount) return Variant(value.ToDouble());
    if (kind == Kind::Flag) return Variant(value.ToBool());
    return Variant(value.ToText());
  } catch (const ConversionError& error) {
    throw ObjectError(class_name_ + "." + std::string(property) + ": " + error.what());
  }
}

Variant LateBound::Get(std::string_view property) { return Find(property).value; }

void LateBound::Put(std::string_view property, const Variant& value) {
  Property& target = Find(property);
  target.value = Checked(property, target.kind, value);
}

void LateBound::Set(std::string_view property, Variant value) {
  Find(property).value = std::move(value);
}

Variant LateBound::Call(std::string_view method, std::span<Variant> arguments) {
  const auto found = methods_.find(method);
  if (found == methods_.end()) {
    throw ObjectError(class_name_ + " no tiene el método «" + std::string(method) + "»");
  }
  const MethodEntry& entry = found->second;
  if (arguments.size() < entry.least || arguments.size() > entry.most) {
    throw ObjectError(class_name_ + "." + std::string(method) +
                      ": número de argumentos incorrecto");
  }
  return entry.method(arguments);
}

}  // namespace tpv::suite
