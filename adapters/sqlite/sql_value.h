// Arguments and results of SQL functions.
#pragma once

#include <sqlite3.h>

#include <string>

namespace tpv::sqlite {

inline bool IsNull(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; }

inline std::string TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text == nullptr ? std::string() : std::string(text, sqlite3_value_bytes(value));
}

inline void ResultText(sqlite3_context* context, const std::string& text) {
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

inline void Fail(sqlite3_context* context, const std::string& text) {
  sqlite3_result_error(context, text.data(), static_cast<int>(text.size()));
}

}  // namespace tpv::sqlite
