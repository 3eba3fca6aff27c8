// Objects created by name and driven by property and method name: how the
// suite's sibling components are reached.
#pragma once

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/variant.h"

namespace tpv {

// An unknown class or member, a wrong number of arguments, or a value that does
// not fit; what() names it.
class ObjectError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Member names are found regardless of case.
class Object {
 public:
  virtual ~Object() = default;

  virtual Variant Get(std::string_view property) = 0;
  // Also sets by reference when `value` holds an object.
  virtual void Put(std::string_view property, const Variant& value) = 0;
  // Arguments taken by reference are written back into `arguments`.
  virtual Variant Call(std::string_view method, std::span<Variant> arguments) = 0;

  template <typename... Args>
  Variant Invoke(std::string_view method, Args&&... args) {
    Variant values[] = {Variant(std::forward<Args>(args))..., Variant()};
    return Call(method, std::span<Variant>(values, sizeof...(Args)));
  }
};

class ObjectFactory {
 public:
  virtual ~ObjectFactory() = default;
  // Throws ObjectError for a class that is not there.
  virtual std::shared_ptr<Object> Create(std::string_view class_name) = 0;
};

}  // namespace tpv
