// Objects driven by name: a table of properties and methods, found regardless of
// case, with values checked before they are taken.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

  // Declares members by literal names; a property starts as 0, "", false or no
  // object.
  void Properties(Kind kind, std::initializer_list<std::string_view> names);
  void Define(std::string_view name, std::size_t least, std::size_t most, Method method);

  std::int32_t Whole(std::string_view property) { return Get(property).IntOr(0); }
  double Amount(std::string_view property) { return Get(property).NumberOr(0); }
  std::string Text(std::string_view property) { return Get(property).TextOr(""); }
  void Set(std::string_view property, Variant value);

 private:
  struct Property {
    std::string_view name;
    Kind kind;
    Variant value;
  };
  struct MethodEntry {
    std::string_view name;
    std::size_t least;
    std::size_t most;
    Method method;
  };

  Property& Find(std::string_view property);
  Variant Checked(std::string_view property, Kind kind, const Variant& value) const;

  std::string class_name_;
  // Few enough that looking through them costs less than building a tree for
  // every object made.
  std::vector<Property> properties_;
  std::vector<MethodEntry> methods_;
};

}  // namespace tpv::suite
