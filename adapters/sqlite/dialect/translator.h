// Turns the shop's dialect into SQLite's: names resolved against the schema,
// types known before anything runs, SQL Server's rules spelled out where SQLite's
// differ.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/schema.h"

namespace tpv::dialect {

enum class SqlType { Null, Bit, Int, Float, Money, Text, DateTime };

struct ResultColumn {
  std::string name;
  SqlType type = SqlType::Null;
  const schema::Column* column = nullptr;  // whose values it has unchanged; null for none
};

struct Translation {
  std::string text;  // for SQLite; literal n of the scanned statement is ?n
  std::vector<ResultColumn> columns;  // empty for statements without rows
  bool writes = false;
  // The table that it writes, or the reference table whose rows it reads whole,
  // without a condition; null for all else.
  const schema::Table* table = nullptr;
};

// `shape` as the scanner gives it. Throws DatabaseError in Spanish that names
// the token, table, column or function it does not understand.
Translation Translate(const std::string& shape);

}  // namespace tpv::dialect
