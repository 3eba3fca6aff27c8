#include "host/interface/values.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "base/text.h"
#include "host/interface/handles.h"

namespace tpv::interface {

namespace {

constexpr std::size_t kMostArguments = 64;

DateTime DateFrom(const zrtpv_date& date) {
  const DateTime value{date.year, date.month, date.day, date.hour,
                       date.minute, date.second, date.millisecond};
  if (!IsValid(value)) throw Fault(ZRTPV_E_ARGUMENT, "La fecha no existe");
  return value;
}

zrtpv_date DateTo(const DateTime& value) {
  const auto narrow = [](int number) { return static_cast<std::int16_t>(number); };
  return {narrow(value.year),   narrow(value.month),  narrow(value.day),
          narrow(value.hour),   narrow(value.minute), narrow(value.second),
          narrow(value.millisecond)};
}

void TextTo(std::string_view text, zrtpv_value& to) {
  auto* bytes = static_cast<char*>(std::malloc(text.size() + 1));
  if (bytes == nullptr) throw std::bad_alloc();
  text.copy(bytes, text.size());
  bytes[text.size()] = '\0';
  to.type = ZRTPV_TEXT;
  to.owned = 1;
  to.as.text.bytes = bytes;
  to.as.text.length = text.size();
}

template <typename T>
bool Holds(const Variant& value) {
  const std::int64_t number = value.ToInt64();
  return std::in_range<T>(number) && value == Variant(static_cast<T>(number));
}

void IntegerTo(const Variant& value, zrtpv_value& to) {
  if (Holds<std::int16_t>(value)) {
    to.type = ZRTPV_INT16;
    to.as.int16 = value.ToInt16();
  } else if (Holds<std::int32_t>(value)) {
    to.type = ZRTPV_INT32;
    to.as.int32 = value.ToInt32();
  } else {
    to.type = ZRTPV_INT64;
    to.as.int64 = value.ToInt64();
  }
}

void NumberTo(const Variant& value, zrtpv_value& to) {
  if (value.IsBool()) {
    to.type = ZRTPV_BOOL;
    to.as.boolean = value.ToBool() ? 1 : 0;
  } else if (value.IsDouble()) {
    to.type = ZRTPV_DOUBLE;
    to.as.number = value.ToDouble();
  } else if (value.IsMoney()) {
    to.type = ZRTPV_MONEY;
    to.as.int64 = value.ToMoney().ten_thousandths;
  } else {
    IntegerTo(value, to);
  }
}

// For destructors: a host that released one of our references too often must not
// end the program here.
void ClearAnyway(zrtpv_value& value) {
  try {
    Clear(value);
  } catch (const Fault&) {
    value = zrtpv_null();
  }
}

}  // namespace

std::string TextFrom(const char* bytes, std::size_t length) {
  if (length == 0) return {};
  const std::string_view text(&Required(bytes, "un texto"), length);
  if (text.find('\0') != std::string_view::npos || ValidUtf8(text) != text) {
    throw Fault(ZRTPV_E_ARGUMENT, "El texto no es UTF-8 o tiene un byte cero");
  }
  return std::string(text);
}

std::string TextFrom(const char* zero_terminated, const char* what) {
  Required(zero_terminated, what);
  return TextFrom(zero_terminated, std::strlen(zero_terminated));
}

Variant FromHost(const zrtpv_value& value) {
  switch (value.type) {
    case ZRTPV_NULL: return {};
    case ZRTPV_BOOL: return Variant(value.as.boolean != 0);
    case ZRTPV_INT16: return Variant(value.as.int16);
    case ZRTPV_INT32: return Variant(value.as.int32);
    case ZRTPV_INT64: return Variant(value.as.int64);
    case ZRTPV_DOUBLE: return Variant(value.as.number);
    case ZRTPV_MONEY: return Variant(Money{value.as.int64});
    case ZRTPV_TEXT: return Variant(TextFrom(value.as.text.bytes, value.as.text.length));
    case ZRTPV_DATE: return Variant(DateFrom(value.as.date));
    case ZRTPV_OBJECT: return Variant(Objects().Find(value.as.object)->object);
    default: throw Fault(ZRTPV_E_ARGUMENT, "El valor es de un tipo que no existe");
  }
}

void ToHost(const Variant& value, const std::shared_ptr<Surroundings>& around, zrtpv_value& to) {
  to = zrtpv_null();
  if (value.IsNull()) return;
  if (value.IsText()) return TextTo(value.ToText(), to);
  if (value.IsNumber()) return NumberTo(value, to);
  if (value.IsDate()) {
    to.type = ZRTPV_DATE;
    to.as.date = DateTo(value.ToDate());
  } else if (value.ToObject() != nullptr) {
    to.type = ZRTPV_OBJECT;
    to.owned = 1;
    to.as.object = HandleOf(around, value.ToObject());
  }
}

void Clear(zrtpv_value& value) {
  if (value.owned == 1 && value.type == ZRTPV_OBJECT) ReleaseObject(value.as.object);
  if (value.owned == 1 && value.type == ZRTPV_TEXT) std::free(const_cast<char*>(value.as.text.bytes));
  value = zrtpv_null();
}

Arguments::Arguments(zrtpv_value* host, std::size_t count) : host_(host) {
  if (count > kMostArguments) throw Fault(ZRTPV_E_COUNT, "Demasiados argumentos");
  if (count > 0) Required(host, "los argumentos");
  for (std::size_t i = 0; i < count; ++i) given_.push_back(FromHost(host[i]));
  values_ = given_;
}

void Arguments::WriteBack(const std::shared_ptr<Surroundings>& around) {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (values_[i] == given_[i]) continue;
    Clear(host_[i]);
    ToHost(values_[i], around, host_[i]);
  }
}

Lent::Lent(std::span<const Variant> values, const std::shared_ptr<Surroundings>& around)
    : ours_(values.size(), zrtpv_null()) {
  for (std::size_t i = 0; i < values.size(); ++i) ToHost(values[i], around, ours_[i]);
  lent_ = ours_;
  for (zrtpv_value& value : lent_) value.owned = 0;
}

Lent::~Lent() {
  for (zrtpv_value& value : lent_) ClearAnyway(value);  // what the host put there to keep
  for (zrtpv_value& value : ours_) ClearAnyway(value);
}

}  // namespace tpv::interface
