// A store's connection that asks nothing twice within a snapshot or a transaction: for
// servers, where each question is a journey and the engine keeps no state for those that
// belong together. What is written, and a transaction that begins, make all of it new.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"

namespace tpv {

class AskedOnce : public Connection {
 public:
  explicit AskedOnce(std::unique_ptr<Connection> inner) : inner_(std::move(inner)) {}

  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  void BeginTrans() override;
  void CommitTrans() override;
  void RollbackTrans() override;
  bool InTransaction() const override { return inner_->InTransaction(); }
  void BeginSnapshot() override;
  void EndSnapshot() noexcept override;

 private:
  struct Answer {
    std::vector<std::string> names;
    std::vector<std::vector<Variant>> rows;
  };
  class Repeated;

  bool Remembers() const { return snapshots_ > 0 || InTransaction(); }

  std::unique_ptr<Connection> inner_;
  std::map<std::string, std::shared_ptr<const Answer>, std::less<>> answers_;  // by statement
  int snapshots_ = 0;
};

}  // namespace tpv
