// A session of a server's driver, used as a program would that sends the
// statements itself and reads every field as text.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>

namespace tpv::bench {

// Throws std::runtime_error when the driver refuses anything.
class RawLine {
 public:
  explicit RawLine(const std::string& connection_string);
  ~RawLine();
  RawLine(const RawLine&) = delete;
  RawLine& operator=(const RawLine&) = delete;

  void Run(const std::string& sql);

 private:
  void ReadAll(SQLHSTMT statement);
  void Require(SQLRETURN result, const char* what) const;

  SQLHENV environment_ = nullptr;
  SQLHDBC session_ = nullptr;
};

}  // namespace tpv::bench
