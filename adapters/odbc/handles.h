// ODBC's handles with an owner each. For the adapter's own files.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <utility>

namespace tpv::odbc {

template <SQLSMALLINT Kind>
class Handle {
 public:
  Handle() = default;
  explicit Handle(SQLHANDLE parent) { SQLAllocHandle(Kind, parent, &handle_); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (handle_ != nullptr) SQLFreeHandle(Kind, handle_);
  }

  SQLHANDLE get() const { return handle_; }

 private:
  SQLHANDLE handle_ = nullptr;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

}  // namespace tpv::odbc
