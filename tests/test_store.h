// A store of its own for one test, removed with it.
#pragma once

#include <memory>
#include <string>

#include "adapters/files/temporary_folder.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "platform/clock.h"

namespace tpv {

class FixedClock : public Clock {
 public:
  DateTime now{2026, 11, 24, 10, 30, 0, 0};
  DateTime Now() const override { return now; }
};

class TestStore {
 public:
  TestStore() {
    CreateStore(path());
    connection_ = Open();
  }

  std::string path() const { return folder_ / "tienda.db"; }
  Connection& connection() { return *connection_; }
  FixedClock& clock() { return clock_; }
  // A second till on the same store.
  std::unique_ptr<SqliteConnection> Open() {
    return std::make_unique<SqliteConnection>(path(), clock_);
  }
  // The first field of the first row as a technician reads it; "NONE" without rows.
  std::string Value(std::string_view sql) {
    const auto rows = connection_->Execute(sql);
    return rows->Eof() ? "NONE" : rows->Field(0).ToPlainText();
  }

 private:
  TemporaryFolder folder_;
  FixedClock clock_;
  std::unique_ptr<SqliteConnection> connection_;
};

}  // namespace tpv
