// A transaction of one's own that joins the caller's when there is one.
#pragma once

#include <optional>

#include "platform/database.h"

namespace tpv::suite {

class OwnTransaction {
 public:
  explicit OwnTransaction(Connection& connection) {
    if (!connection.InTransaction()) transaction_.emplace(connection);
  }
  void Commit() {
    if (transaction_) transaction_->Commit();
  }

 private:
  std::optional<Transaction> transaction_;
};

}  // namespace tpv::suite
