#include "host/interface/handles.h"

namespace tpv::interface {

// Never taken down: what a host did not release goes with the process, after
// everything that it would need is gone.
Registry<zrtpv_till>& Tills() {
  static auto& tills = *new Registry<zrtpv_till>;
  return tills;
}

Registry<zrtpv_object>& Objects() {
  static auto& objects = *new Registry<zrtpv_object>;
  return objects;
}

zrtpv_object* HandleOf(const std::shared_ptr<Surroundings>& around,
                       const std::shared_ptr<Object>& object) {
  zrtpv_object* const known = Objects().FirstIf([&](const zrtpv_object& handle) {
    return handle.object == object && handle.thread == ThisThread();
  });
  if (known != nullptr) {
    ++known->references;
    return known;
  }
  auto handle = std::make_shared<zrtpv_object>();
  handle->around = around;
  handle->object = object;
  return Objects().Add(std::move(handle));
}

void ReleaseObject(zrtpv_object* handle) {
  const auto found = Objects().Find(handle);
  if (--found->references == 0) Objects().Remove(handle);
}

}  // namespace tpv::interface
