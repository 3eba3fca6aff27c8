// A shop that is open for work: its store, the component on it, and what goes on behind
// the operator's back.
#pragma once

#include <memory>
#include <string>

#include "component/zrtpve.h"
#include "host/shops.h"
#include "host/store_errands.h"
#include "suite/suite_factory.h"

namespace tpv {

class OpenShop {
 public:
  // Opens what is there, never makes a store. The ports outlive the shop; `in_background`:
  // mails go out while the operator goes on. Throws DatabaseError and UsageError.
  OpenShop(const Ports& ports, std::string store, bool in_background);

  const KnownShop& about() const { return about_; }
  const std::string& store() const { return about_.store; }
  // Of years gone by: only looked at.
  bool archive() const { return archive_; }
  // "DEMOSTRACIÓN" where sales are nobody's, "ARCHIVO HASTA 2019", else "".
  const std::string& banner() const { return banner_; }
  Connection& connection() { return *connection_; }
  Zrtpve& component() { return component_; }
  Context& context() { return component_.context(); }

 private:
  suite::SuiteFactory objects_;
  Ports ports_;
  KnownShop about_;
  std::unique_ptr<Connection> connection_;
  std::unique_ptr<StoreErrands> errands_;
  bool archive_ = false;
  std::string banner_;
  Zrtpve component_;
};

}  // namespace tpv
