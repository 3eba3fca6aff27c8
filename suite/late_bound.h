// Objects driven by name: a table of properties and methods, found regardless of
// case, with values checked before they are taken.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "platform/objects.h"

namespace tpv::suite {

// What a property takes; a value that does not fit is refused by name.
enum class Kind { Whole, Amount, Text, Flag, Object };

class LateBound : public Object {
 public:
  Variant Get(std::string_view property) override;
  void Put(std::string_view property, const Variant& value) override;
  Variant Call(std::string_view method, std::span<Variant> arguments) override;

 protected:
  using Method = std::function<Variant(std::span<Variant>)>;

  explicit LateBound(std::string class_name) : class_name_(std::move(class_name)) {}

  // Declares members; a property starts as 0, "", false or no object.
  void Properties(Kind kind, std::initializer_list<std::string_view> names);
  void Define(std::string_view name, std::size_t least, std::size_t most, Method method);

  std::int32_t Whole(std::string_view property) { return Get(property).IntOr(0); }
  double Amount(std::string_view property) { return Get(property).NumberOr(0); }
  std::string Text(std::string_view property) { return Get(property).TextOr(""); }
  void Set(std::string_view property, Variant value);

 private:
  struct NoCase {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
  };
  struct Property {
    Kind kind;
    Variant value;
  };
  struct MethodEntry {
    std::size_t least;
    std::size_t most;
    Method method;
  };

  Property& Find(std::string_view property);
  Variant Checked(std::string_view property, Kind kind, const Variant& value) const;

  std::string class_name_;
  std::map<std::string, Property, NoCase> properties_;
  std::map<std::string, MethodEntry, NoCase> methods_;
};

}  // namespace tpv::suite
