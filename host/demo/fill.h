// Writing rows while a demonstration is filled.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "data/insert_row.h"
#include "platform/database.h"

namespace tpv::demo {

using Sql = sql::Value;
using sql::Null;

// Inserts one row; `columns` as they stand between the parentheses.
inline void Insert(Connection& connection, const std::string& table, const std::string& columns,
                   std::initializer_list<Sql> values) {
  sql::InsertRow(connection, table, columns, values);
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
