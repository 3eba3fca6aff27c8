// A connection of the host's own.
#pragma once

#include "host/interface/faults.h"
#include "host/interface/surroundings.h"
#include "platform/database.h"

namespace tpv::interface {

class HostConnection : public Connection {
 public:
  // Throws Fault for a table of callbacks that is not complete.
  HostConnection(const zrtpv_database& functions, std::shared_ptr<Surroundings> around);
  ~HostConnection() override;
  HostConnection(const HostConnection&) = delete;
  HostConnection& operator=(const HostConnection&) = delete;

  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  void BeginTrans() override;
  void CommitTrans() override;
  void RollbackTrans() override;
  bool InTransaction() const override { return in_transaction_; }

  bool HasParameters() const { return functions_.parameter != nullptr; }
  Variant Parameter(std::string_view name);

 private:
  const zrtpv_database functions_;
  std::shared_ptr<Surroundings> around_;
  bool in_transaction_ = false;
};

}  // namespace tpv::interface
