// The functions of include/zrtpv.h about values and objects.
#include "host/interface/handles.h"
#include "host/interface/values.h"

using namespace tpv::interface;

int32_t zrtpv_set_text(zrtpv_value* value, const char* bytes, size_t length) {
  return Answer([&] {
    ToHost(tpv::Variant(TextFrom(bytes, length)), nullptr, Required(value, "el valor"));
  });
}

int32_t zrtpv_clear(zrtpv_value* value) {
  return Answer([&] { Clear(Required(value, "el valor")); });
}

int32_t zrtpv_object_retain(zrtpv_object* object) {
  return Answer([&] { ++Objects().Find(object)->references; });
}

int32_t zrtpv_object_release(zrtpv_object* object) {
  return Answer([&] { ReleaseObject(object); });
}

int32_t zrtpv_object_get(zrtpv_object* object, const char* property, zrtpv_value* result) {
  return Answer([&] {
    ResultSlot slot(result);
    const auto handle = Objects().Find(object);
    slot.Give(handle->object->Get(TextFrom(property, "la propiedad")), handle->around);
  });
}

int32_t zrtpv_object_put(zrtpv_object* object, const char* property, const zrtpv_value* value) {
  return Answer([&] {
    const auto handle = Objects().Find(object);
    handle->object->Put(TextFrom(property, "la propiedad"), FromHost(Required(value, "el valor")));
  });
}

int32_t zrtpv_object_call(zrtpv_object* object, const char* method, zrtpv_value* arguments,
                          size_t count, zrtpv_value* result) {
  return Answer([&] {
    ResultSlot slot(result);
    const auto handle = Objects().Find(object);
    Arguments values(arguments, count);
    const tpv::Variant answer =
        handle->object->Call(TextFrom(method, "el método"), values.values());
    values.WriteBack(handle->around);
    slot.Give(answer, handle->around);
  });
}
