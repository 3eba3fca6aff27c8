// The one description of the tables: columns, keys, defaults and indexes. Both
// engines' data definition statements are generated from it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tpv::schema {

enum class Type { Int, SmallInt, Bit, Float, Money, Text, DateTime };

// Which database a table lives in: the shop's own, or the suite's shared
// catalogue `zrcomun`.
enum class Home { Store, Catalogue };

enum class Default { None, Zero, One, Now };

struct Column {
  std::string_view name;
  Type type;
  int length = 0;  // characters of a text; 0: no limit
  bool required = false;
  Default initial = Default::None;
};

struct Index {
  // " DESC" behind a name keeps its values in falling order.
  std::vector<std::string_view> columns;
  bool unique = false;
};

struct Table {
  std::string_view name;
  Home home;
  // The key is the first column when `identity` (numbered by the engine) or
  // `keyed` (a code); a table with neither has no key.
  bool identity;
  bool keyed;
  std::vector<Column> columns;
  std::vector<Index> indexes;
  // A short list that a technician writes and every sale reads whole.
  bool reference = false;

  // Index of a column by name regardless of case, -1 when there is none.
  int Find(std::string_view column) const;
};

// "Cav_Id, Cav_Serie, …".
std::string ColumnNames(const Table& table);

// "ix_DiaCaj_DiaCaj_Caja_DiaCaj_Fecha_DESC", and the columns as they stand in
// the index's definition.
std::string IndexName(const Table& table, const Index& index);
std::string IndexColumns(const Index& index);

std::span<const Table> Tables();
// By name regardless of case; null when there is none.
const Table* FindTable(std::string_view name);

}  // namespace tpv::schema
