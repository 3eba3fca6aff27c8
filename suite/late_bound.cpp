#include "suite/late_bound.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::suite {

namespace {

Variant Initial(Kind kind) {
  switch (kind) {
    case Kind::Whole: return Variant(0);
    case Kind::Amount: return Variant(0.0);
    case Kind::Text: return Variant("");
    case Kind::Flag: return Variant(false);
    default: return {};
  }
}

// The member so named regardless of case; null when there is none. Callers write
// most names as they were declared.
template <typename Member>
Member* Named(std::vector<Member>& members, std::string_view name) {
  auto found = std::find_if(members.begin(), members.end(),
                            [name](const Member& member) { return member.name == name; });
  if (found == members.end()) {
    found = std::find_if(members.begin(), members.end(),
                         [name](const Member& member) { return EqualNoCase(member.name, name); });
  }
  return found == members.end() ? nullptr : &*found;
}

}  // namespace

void LateBound::Properties(Kind kind, std::initializer_list<std::string_view> names) {
  constexpr std::size_t kUsual = 64;
  properties_.reserve(std::max(kUsual, properties_.size() + names.size()));
  for (const std::string_view name : names) properties_.push_back({name, kind, Initial(kind)});
}

void LateBound::Define(std::string_view name, std::size_t least, std::size_t most, Method method) {
  methods_.push_back({name, least, most, std::move(method)});
}

LateBound::Property& LateBound::Find(std::string_view property) {
  Property* const found = Named(properties_, property);
  if (found == nullptr) {
    throw ObjectError(class_name_ + " no tiene la propiedad «" + std::string(property) + "»");
  }
  return *found;
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
  const MethodEntry* const entry = Named(methods_, method);
  if (entry == nullptr) {
    throw ObjectError(class_name_ + " no tiene el método «" + std::string(method) + "»");
  }
  if (arguments.size() < entry->least || arguments.size() > entry->most) {
    throw ObjectError(class_name_ + "." + std::string(method) +
                      ": número de argumentos incorrecto");
  }
  return entry->method(arguments);
}

}  // namespace tpv::suite
