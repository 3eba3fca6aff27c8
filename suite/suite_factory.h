// Creates the suite's components by the names that the screens know.
#pragma once

#include "platform/objects.h"
#include "platform/ports.h"

namespace tpv::suite {

class SuiteFactory : public ObjectFactory {
 public:
  // The front end and the ports outlive the factory and what it creates.
  void SetPorts(Ports& ports) { ports_ = &ports; }
  std::shared_ptr<Object> Create(std::string_view class_name) override;

 private:
  Ports* ports_ = nullptr;
};

}  // namespace tpv::suite
