// Writing rows while a demonstration is filled.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "base/date_time.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::demo {

// A value as SQL text.
struct Sql {
  Sql(int value) : text(sql::Number(std::int64_t{value})) {}
  Sql(double value) : text(sql::Number(value)) {}
  Sql(const char* value) : text(sql::Quoted(value)) {}
  Sql(const std::string& value) : text(sql::Quoted(value)) {}
  Sql(const DateTime& value) : text("'" + ToDayFirstSeconds(value) + "'") {}
  std::string text;
};

inline Sql Null() {
  Sql value(0);
  value.text = "NULL";
  return value;
}

// Inserts one row; `columns` as they stand between the parentheses.
inline void Insert(Connection& connection, const std::string& table, const std::string& columns,
                   std::initializer_list<Sql> values) {
  std::string text;
  for (const Sql& value : values) text += (text.empty() ? "" : ", ") + value.text;
  connection.Execute("INSERT INTO " + table + " (" + columns + ") VALUES (" + text + ")");
}

// The same numbers on every machine.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed * 2862933555777941757ULL + 3037000493ULL) {}
  // From 0 to `sides` - 1.
  int Roll(int sides) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(sides));
  }

 private:
  std::uint64_t state_;
};

}  // namespace tpv::demo
