// Writing whole rows: values become SQL text by their own kind.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "base/date_time.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::sql {

// A value as SQL text.
struct Value {
  Value(bool value) : text(value ? "1" : "0") {}
  Value(int value) : text(Number(std::int64_t{value})) {}
  Value(double value) : text(Number(value)) {}
  Value(const char* value) : text(Quoted(value)) {}
  Value(const std::string& value) : text(Quoted(value)) {}
  Value(const DateTime& value) : text("'" + ToDayFirstSeconds(value) + "'") {}
  std::string text;
};

inline Value Null() {
  Value value(0);
  value.text = "NULL";
  return value;
}

inline std::string List(std::initializer_list<Value> values) {
  std::string text;
  for (const Value& value : values) text += (text.empty() ? "" : ", ") + value.text;
  return text;
}

// Inserts one row; `columns` as they stand between the parentheses.
inline void InsertRow(Connection& connection, const std::string& table, const std::string& columns,
                      std::initializer_list<Value> values) {
  connection.Execute("INSERT INTO " + table + " (" + columns + ") VALUES (" + List(values) + ")");
}

}  // namespace tpv::sql
