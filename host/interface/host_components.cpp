#include "host/interface/host_components.h"

#include "host/interface/surroundings.h"
#include "host/interface/values.h"

namespace tpv::interface {

namespace {

const Variant kNothing;

// One component of the host, as a sibling of ours.
class HostComponent : public Object {
 public:
  HostComponent(Surroundings& around, void* component, std::string class_name)
      : around_(around.shared_from_this()),
        functions_(around.components()),
        component_(component),
        class_name_(std::move(class_name)) {}
  ~HostComponent() override { functions_.release(functions_.host, component_); }
  HostComponent(const HostComponent&) = delete;
  HostComponent& operator=(const HostComponent&) = delete;

  Variant Get(std::string_view property) override {
    Lent result({&kNothing, 1}, around_);
    Check(property, [&](const char* name) {
      return functions_.get(functions_.host, component_, name, result.data());
    });
    return Read(property, result, 0);
  }

  void Put(std::string_view property, const Variant& value) override {
    Lent lent({&value, 1}, around_);
    Check(property, [&](const char* name) {
      return functions_.put(functions_.host, component_, name, lent.data());
    });
  }

  Variant Call(std::string_view method, std::span<Variant> arguments) override {
    Lent result({&kNothing, 1}, around_);
    Lent lent(arguments, around_);
    Check(method, [&](const char* name) {
      return functions_.call(functions_.host, component_, name, lent.data(), arguments.size(),
                             result.data());
    });
    for (std::size_t i = 0; i < arguments.size(); ++i) arguments[i] = Read(method, lent, i);
    return Read(method, result, 0);
  }

 private:
  template <typename Callback>
  void Check(std::string_view member, Callback callback) {
    TakeCallbackText();
    if (callback(std::string(member).c_str()) == ZRTPV_OK) return;
    const std::string reason = TakeCallbackText();
    throw ObjectError(Name(member) + ": " + (reason.empty() ? "el componente falló" : reason));
  }

  Variant Read(std::string_view member, const Lent& values, std::size_t index) const {
    try {
      return values[index];
    } catch (const Fault& fault) {
      throw ObjectError(Name(member) + ": " + fault.what());
    }
  }

  std::string Name(std::string_view member) const {
    return class_name_ + "." + std::string(member);
  }

  std::shared_ptr<Surroundings> around_;
  const zrtpv_components& functions_;
  void* component_;
  std::string class_name_;
};

}  // namespace

std::shared_ptr<Object> HostComponents::FromHost(std::string_view class_name) {
  const zrtpv_components& functions = around_.components();
  const std::string name(class_name);
  if (functions.create == nullptr) return nullptr;
  void* component = nullptr;
  TakeCallbackText();
  if (functions.create(functions.host, name.c_str(), &component) != ZRTPV_OK) {
    throw ObjectError("No se puede crear el componente «" + name + "»: " + TakeCallbackText());
  }
  if (component == nullptr) return nullptr;
  return std::make_shared<HostComponent>(around_, component, name);
}

std::shared_ptr<Object> HostComponents::Create(std::string_view class_name) {
  auto component = FromHost(class_name);
  return component ? component : stand_ins_.Create(class_name);
}

bool HostComponents::IsTheHosts(std::string_view class_name) {
  return FromHost(class_name) != nullptr;
}

}  // namespace tpv::interface
