// Tills and objects as hosts hold them. What a host passes is looked up before
// it is touched: a stale, foreign or invented pointer is an error, not a crash.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "component/zrtpve.h"
#include "host/interface/faults.h"
#include "host/interface/surroundings.h"
#include "platform/objects.h"

struct zrtpv_till {
  explicit zrtpv_till(std::shared_ptr<tpv::interface::Surroundings> its)
      : around(std::move(its)), component(around->ports()) {}

  const std::uint64_t thread = tpv::interface::ThisThread();
  const std::shared_ptr<tpv::interface::Surroundings> around;
  tpv::Zrtpve component;
  int calls = 0;  // under way
  bool playing = false;
};

struct zrtpv_object {
  const std::uint64_t thread = tpv::interface::ThisThread();
  std::shared_ptr<tpv::interface::Surroundings> around;  // goes after the object
  std::shared_ptr<tpv::Object> object;
  int references = 1;
};

namespace tpv::interface {

template <typename Handle>
class Registry {
 public:
  Handle* Add(std::shared_ptr<Handle> handle) {
    const std::lock_guard lock(mutex_);
    Handle* const key = handle.get();
    all_.emplace(key, std::move(handle));
    return key;
  }
  // The thread is compared before anything is shared, so that the last owner is
  // always the handle's own thread.
  std::shared_ptr<Handle> Find(const Handle* key) {
    const std::lock_guard lock(mutex_);
    const auto found = all_.find(key);
    if (found == all_.end()) throw Fault(ZRTPV_E_HANDLE, "No existe ese objeto, o ya no");
    if (found->second->thread == ThisThread()) return found->second;
    throw Fault(ZRTPV_E_THREAD, "Se ha llamado desde un hilo que no es el del objeto");
  }
  template <typename Test>
  Handle* FirstIf(Test test) {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, handle] : all_) {
      if (test(*handle)) return handle.get();
    }
    return nullptr;
  }
  void Remove(const Handle* key) {
    std::shared_ptr<Handle> last;  // goes outside of the lock
    const std::lock_guard lock(mutex_);
    const auto found = all_.find(key);
    last = std::move(found->second);
    all_.erase(found);
  }

 private:
  std::mutex mutex_;
  std::map<const Handle*, std::shared_ptr<Handle>> all_;
};

Registry<zrtpv_till>& Tills();
Registry<zrtpv_object>& Objects();

// The handle of an object, one reference more; the same object keeps its handle.
zrtpv_object* HandleOf(const std::shared_ptr<Surroundings>& around,
                       const std::shared_ptr<Object>& object);
void ReleaseObject(zrtpv_object* handle);

}  // namespace tpv::interface
