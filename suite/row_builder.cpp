#include "suite/row_builder.h"

#include <algorithm>

#include "base/date_time.h"
#include "base/text.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::suite {

namespace {

// The value as SQL text; throws for one that does not fit its kind.
std::string SqlValue(ValueKind kind, const Variant& value) {
  if (value.IsNull()) return "Null";
  switch (kind) {
    case ValueKind::Flag:
      return value.ToBool() ? "1" : "0";
    case ValueKind::Whole:
      return sql::Number(value.ToInt64());
    case ValueKind::Amount:
      return sql::Number(value.ToDouble());
    case ValueKind::Date: {
      const DateTime date = value.ToDate();
      return "'" + Left(ToDayFirstSeconds(date), value.IsText() && value.ToText().size() <= 10 ? 10 : 19) + "'";
    }
    case ValueKind::Literal:
      return value.ToText();
    default:
      return sql::Quoted(value.ToText());
  }
}

bool IsName(std::string_view name) {
  const auto part = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), part);
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

void RequireName(std::string_view name) {
  if (!IsName(name)) throw ObjectError("Nombre no válido: «" + std::string(name) + "»");
}

}  // namespace

void StatementBuilder::Start() {
  table_.clear();
  own_transaction_ = true;
  fields_.clear();
  condition_.clear();
}

void StatementBuilder::Add(std::string_view column, ValueKind kind, const Variant& value) {
  fields_.push_back({std::string(column), kind, value});
}

std::string StatementBuilder::InsertText() const {
  std::string columns;
  std::string values;
  for (const Field& field : fields_) {
    RequireName(field.column);
    columns.append(columns.empty() ? "" : ", ").append(field.column);
    values.append(values.empty() ? "" : ", ").append(SqlValue(field.kind, field.value));
  }
  return "INSERT INTO " + table_ + " (" + columns + ") VALUES (" + values + ")";
}

std::string StatementBuilder::UpdateText() const {
  constexpr std::size_t kUsual = 200;
  if (IsBlank(condition_)) throw ObjectError("Falta la condición de la actualización");
  std::string sql;
  sql.reserve(kUsual);
  sql.append("UPDATE ").append(table_);
  const char* before = " SET ";
  for (const Field& field : fields_) {
    RequireName(field.column);
    sql.append(std::exchange(before, ", ")).append(field.column).append(" = ") += SqlValue(field.kind, field.value);
  }
  return sql += condition_;
}

template <typename Text>
bool StatementBuilder::Run(Text text, std::string& error) {
  try {
    RequireName(table_);
    if (fields_.empty()) throw ObjectError("No hay columnas que grabar");
    const std::string sql = text();
    if (own_transaction_ && !connection_.InTransaction()) {
      Transaction transaction(connection_);
      connection_.Execute(sql);
      transaction.Commit();
    } else {
      connection_.Execute(sql);
    }
    Start();
    return true;
  } catch (const std::exception& failure) {
    error = failure.what();
    Start();
    return false;
  }
}

bool StatementBuilder::Insert(std::string& error) {
  return Run([this] { return InsertText(); }, error);
}

bool StatementBuilder::Update(std::string& error) {
  return Run([this] { return UpdateText(); }, error);
}

}  // namespace tpv::suite
