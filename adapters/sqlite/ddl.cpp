#include "adapters/sqlite/ddl.h"

namespace tpv {

namespace {

std::string TypeText(const schema::Column& column) {
  switch (column.type) {
    case schema::Type::Int:
    case schema::Type::SmallInt:
    case schema::Type::Bit:
      return "INTEGER";
    case schema::Type::Float:
    case schema::Type::Money:
      return "REAL";
    case schema::Type::DateTime:
      return "TEXT";
    default:
      return "TEXT COLLATE TPV";
  }
}

}  // namespace

std::string SqliteColumn(const schema::Table& table, std::size_t index) {
  const schema::Column& column = table.columns[index];
  std::string text = "\"" + std::string(column.name) + "\" " + TypeText(column);
  if (index == 0 && table.identity) return text + " PRIMARY KEY AUTOINCREMENT";
  if (index == 0 && table.keyed) text += " PRIMARY KEY";
  if (column.required) text += " NOT NULL";
  if (column.initial == schema::Default::Zero) text += " DEFAULT 0";
  if (column.initial == schema::Default::One) text += " DEFAULT 1";
  return text;
}

std::vector<std::string> SqliteDdl(const schema::Table& table, const std::string& database) {
  const std::string name(table.name);
  std::string columns;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    columns += (i == 0 ? "" : ", ") + SqliteColumn(table, i);
  }
  std::vector<std::string> statements = {"CREATE TABLE IF NOT EXISTS " + database + ".\"" + name + "\" (" +
                                         columns + ")"};
  for (const schema::Index& index : table.indexes) {
    statements.push_back(std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX IF NOT EXISTS " +
                         database + ".\"" + schema::IndexName(table, index) + "\" ON \"" + name + "\" (" +
                         schema::IndexColumns(index) + ")");
  }
  return statements;
}

}  // namespace tpv
