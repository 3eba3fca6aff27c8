// Values on their way between a host and the component.
#pragma once

#include <span>
#include <vector>

#include "base/variant.h"
#include "host/interface/surroundings.h"
#include "include/zrtpv.h"

static_assert(sizeof(zrtpv_value) == 24, "hosts of other languages count on it");

namespace tpv::interface {

// The text of a host, checked: UTF-8 without zero bytes. Throws Fault.
std::string TextFrom(const char* bytes, std::size_t length);
std::string TextFrom(const char* zero_terminated, const char* what);

// Throws Fault for a type, date, text or object that does not exist.
Variant FromHost(const zrtpv_value& value);
// Overwrites `to` without releasing it; texts and objects in it are owned.
void ToHost(const Variant& value, const std::shared_ptr<Surroundings>& around, zrtpv_value& to);
void Clear(zrtpv_value& value);

// The result of a call of the host, when it wants it; null until it is given.
class ResultSlot {
 public:
  explicit ResultSlot(zrtpv_value* slot) : slot_(slot) {
    if (slot_ != nullptr) *slot_ = zrtpv_null();
  }
  void Give(const Variant& value, const std::shared_ptr<Surroundings>& around) {
    if (slot_ != nullptr) ToHost(value, around, *slot_);
  }

 private:
  zrtpv_value* slot_;
};

// The host's arguments; those that a call changed are written back into them.
class Arguments {
 public:
  Arguments(zrtpv_value* host, std::size_t count);
  std::span<Variant> values() { return values_; }
  void WriteBack(const std::shared_ptr<Surroundings>& around);

 private:
  zrtpv_value* host_;
  std::vector<Variant> given_;
  std::vector<Variant> values_;
};

// Values of ours for the time of a callback, not the host's to release. What it
// puts in their place with zrtpv_set_text is released with them.
class Lent {
 public:
  Lent(std::span<const Variant> values, const std::shared_ptr<Surroundings>& around);
  ~Lent();
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

  zrtpv_value* data() { return lent_.data(); }
  Variant operator[](std::size_t index) const { return FromHost(lent_[index]); }

 private:
  std::vector<zrtpv_value> ours_;
  std::vector<zrtpv_value> lent_;
};

}  // namespace tpv::interface
