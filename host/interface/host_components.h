// Components created by name: the host's own where it has them, else the
// built-in stand-ins.
#pragma once

#include "host/interface/faults.h"
#include "suite/suite_factory.h"

namespace tpv::interface {

class Surroundings;

class HostComponents : public ObjectFactory {
 public:
  // The surroundings outlive the factory.
  explicit HostComponents(Surroundings& around) : around_(around) {}
  // The ports outlive the factory and what it creates.
  void SetPorts(Ports& ports) { stand_ins_.SetPorts(ports); }
  std::shared_ptr<Object> Create(std::string_view class_name) override;
  // Whether the host brings that component along: asks for one.
  bool IsTheHosts(std::string_view class_name);

 private:
  std::shared_ptr<Object> FromHost(std::string_view class_name);

  Surroundings& around_;
  suite::SuiteFactory stand_ins_;
};

}  // namespace tpv::interface
