// The embedded store's reading of the dialect against what a real engine
// answered, and the facts that matter most restated where its files are absent.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "adapters/sqlite/sqlite_connection.h"
#include "base/number_text.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

using nlohmann::json;

std::string ReadFile(const std::string& name) {
  std::ifstream file(std::string(TPV_ENGINE_FOLDER) + "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

void LoadReference(Connection& connection) {
  std::istringstream lines(ReadFile("data.sql"));
  std::string line;
  std::string batch;
  while (std::getline(lines, line)) {
    if (line == "GO") {
      if (batch.find("INSERT") != std::string::npos) connection.Execute(batch.substr(0, batch.size() - 1));
      batch.clear();
    } else if (!line.starts_with("--")) {
      batch += line + "\n";
    }
  }
}

std::string Comparable(const json& value) {
  if (value.is_null()) return "NULL";
  if (value.is_number()) return ToPlain(std::round(value.get<double>() * 1e8) / 1e8);
  if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
  const std::string text = value.get<std::string>();
  if (text.size() == 23 && text[4] == '-') return text.substr(0, 19);
  const auto number = ParseNumber(text);
  return number && text.find('.') != std::string::npos ? ToPlain(std::strtod(text.c_str(), nullptr)) : text;
}

std::string Comparable(const Variant& value) {
  if (value.IsDouble() || value.IsMoney()) {
    return ToPlain(std::round(value.ToDouble() * 1e8) / 1e8);
  }
  const std::string text = value.ToPlainText();
  const auto number = ParseNumber(text);
  if (value.IsText() && number && text.find('.') != std::string::npos) {
    return ToPlain(std::strtod(text.c_str(), nullptr));
  }
  return text;
}

using Rows = std::multiset<std::vector<std::string>>;

Rows Expected(const json& record) {
  Rows rows;
  for (const json& row : record["rows"]) {
    std::vector<std::string> cells;
    for (const json& cell : row) cells.push_back(Comparable(cell));
    rows.insert(cells);
  }
  return rows;
}

Rows Found(Recordset& recordset) {
  Rows rows;
  for (; !recordset.Eof(); recordset.MoveNext()) {
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < recordset.FieldCount(); ++i) {
      cells.push_back(Comparable(recordset.Field(i)));
    }
    rows.insert(cells);
  }
  return rows;
}

std::string Printed(const Rows& rows) {
  std::string text;
  for (const auto& row : rows) {
    for (const std::string& cell : row) text += cell + " | ";
    text += "\n";
  }
  return text;
}

// "" when the store agrees with the record.
std::string Disagreement(Connection& connection, const json& record) {
  try {
    const Rows found = Found(*connection.Execute(record["statement"].get<std::string>()));
    if (record.contains("error")) return "no error, but expected " + record["error"].dump();
    if (record.contains("rows") && found != Expected(record)) {
      return "expected\n" + Printed(Expected(record)) + "found\n" + Printed(found);
    }
    return {};
  } catch (const std::exception& error) {
    return record.contains("error") ? std::string() : std::string("error: ") + error.what();
  }
}

TEST(Dialect, AgreesWithARealEngine) {
  if (!std::filesystem::exists(std::string(TPV_ENGINE_FOLDER) + "/answers.json")) {
    GTEST_SKIP() << "the engine's answers are not on this machine";
  }
  TestStore store;
  LoadReference(store.connection());
  const json records = json::parse(ReadFile("answers.json"));
  std::string group;
  int compared = 0;
  for (const json& record : records) {
    if (record.contains("sqlserver") && !record["sqlserver"].is_null()) continue;
    const std::string next = record.value("group", json()).is_null() ? "" : record["group"].dump();
    if (next != group && store.connection().InTransaction()) store.connection().RollbackTrans();
    if (!next.empty() && next != group) store.connection().BeginTrans();
    group = next;
    EXPECT_EQ(Disagreement(store.connection(), record), "") << record["statement"];
    ++compared;
  }
  EXPECT_GT(compared, 300);
}

}  // namespace
}  // namespace tpv
