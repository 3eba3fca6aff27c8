#include "host/store_copy.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "adapters/sqlite/sqlite_connection.h"
#include "base/date_time.h"
#include "base/text.h"
#include "data/schema.h"
#include "data/sql_text.h"
#include "host/using_database.h"

namespace tpv {

namespace {

constexpr std::size_t kRowsAtOnce = 200;
constexpr std::size_t kTextAtOnce = 200'000;

std::string NameOf(const schema::Table& table) {
  return (table.home == schema::Home::Catalogue ? "zrcomun.dbo." : "") + std::string(table.name);
}

std::string SelectAll(const schema::Table& table) {
  std::string sql = "SELECT " + schema::ColumnNames(table) + " FROM " + NameOf(table);
  if (table.identity || table.keyed) sql.append(" ORDER BY ").append(table.columns[0].name);
  return sql;
}

// A double as a literal that reads back as the same double.
std::string Exact(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.16e", value);
  return text;
}

std::string Exact(Money value) {
  const std::int64_t whole = value.ten_thousandths / 10000;
  const std::int64_t rest = std::abs(value.ten_thousandths % 10000);
  char text[40];
  std::snprintf(text, sizeof text, "%s%lld.%04lld", value.ten_thousandths < 0 ? "-" : "",
                static_cast<long long>(std::abs(whole)), static_cast<long long>(rest));
  return text;
}

std::string Exact(const DateTime& value) {
  char rest[8];
  std::snprintf(rest, sizeof rest, ".%03d", value.millisecond % 1000);
  return "'" + ToDayFirstSeconds(value) + rest + "'";
}

// SQL Server keeps moments in steps of a three-hundredth of a second.
DateTime ToStep(DateTime value) {
  const int step = static_cast<int>(std::lround(value.millisecond * 0.3));
  if (step == 300) value = AddSeconds(value, 1);
  value.millisecond = static_cast<int>(std::lround(step % 300 / 0.3));
  return value;
}

enum class Moments { AsStored, InSteps };

std::string Literal(schema::Type type, const Variant& value, Moments moments) {
  if (value.IsNull()) return "NULL";
  switch (type) {
    case schema::Type::Float:
      return Exact(value.ToDouble());
    case schema::Type::Money:
      return Exact(value.ToMoney());
    case schema::Type::Bit:
      return value.ToBool() ? "1" : "0";
    case schema::Type::Text:
      return sql::Quoted(value.ToText());
    case schema::Type::DateTime:
      return Exact(moments == Moments::AsStored ? value.ToDate() : ToStep(value.ToDate()));
    default:
      return std::to_string(value.ToInt64());
  }
}

// Rows and the sum of their checks: the same whatever the order of the rows.
class Sums {
 public:
  void Add(const std::string& row) {
    std::uint64_t check = 14695981039346656037ULL;
    for (const char c : row) check = (check ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    sum_ += check;
    ++rows_;
  }
  long rows() const { return rows_; }
  bool operator==(const Sums&) const = default;

 private:
  long rows_ = 0;
  std::uint64_t sum_ = 0;
};

// The current row as "(1, N'Peña', NULL)".
std::string RowText(const schema::Table& table, const Recordset& rows, Moments moments) {
  std::string text = "(";
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    try {
      text += (i == 0 ? "" : ", ") + Literal(table.columns[i].type, rows.Field(i), moments);
    } catch (const ConversionError& error) {
      throw DatabaseError(error.WithMember(table.columns[i].name).what(), "22018");
    }
  }
  return text + ")";
}

template <typename Work>
Sums ForEachRow(Connection& connection, const schema::Table& table, Work work) {
  Sums sums;
  const auto rows = connection.Execute(SelectAll(table));
  for (; !rows->Eof(); rows->MoveNext()) {
    sums.Add(RowText(table, *rows, Moments::InSteps));
    work(*rows);
  }
  return sums;
}

Sums SumsOf(Connection& connection, const schema::Table& table) {
  return ForEachRow(connection, table, [](const Recordset&) {});
}

// The right to write a table's numbers, in the table's own database.
class NumberSwitch {
 public:
  NumberSwitch(Connection& to, const schema::Table& table)
      : to_(to), statement_("SET IDENTITY_INSERT dbo." + std::string(table.name)) {
    if (table.home == schema::Home::Catalogue) catalogue_.emplace(to, "zrcomun");
    to_.Execute(statement_ + " ON");
  }
  void Off() { to_.Execute(statement_ + " OFF"); }

 private:
  Connection& to_;
  std::string statement_;
  std::optional<UsingDatabase> catalogue_;
};

// Gathers rows into statements of many.
class Writer {
 public:
  Writer(Connection& to, const schema::Table& table, Numbers numbers)
      : to_(to),
        head_("INSERT INTO " + NameOf(table) + " (" + schema::ColumnNames(table) + ") VALUES ") {
    if (table.identity && numbers == Numbers::Switched) switch_.emplace(to, table);
  }
  void Add(const std::string& row) {
    rows_ += (count_ == 0 ? "" : ", ") + row;
    if (++count_ == kRowsAtOnce || rows_.size() > kTextAtOnce) Flush();
  }
  void Finish() {
    Flush();
    if (switch_) switch_->Off();
  }

 private:
  void Flush() {
    if (count_ > 0) to_.Execute(head_ + rows_);
    rows_.clear();
    count_ = 0;
  }

  Connection& to_;
  std::string head_;
  std::string rows_;
  std::size_t count_ = 0;
  std::optional<NumberSwitch> switch_;
};

bool IsEmpty(Connection& connection, const schema::Table& table) {
  return connection.Execute("SELECT TOP 1 * FROM " + NameOf(table))->Eof();
}

// True when the table has to be copied.
bool RequireRoom(Connection& from, Connection& to, const schema::Table& table) {
  if (IsEmpty(to, table)) return true;
  if (table.home == schema::Home::Catalogue && SumsOf(from, table) == SumsOf(to, table)) return false;
  throw DatabaseError("La tabla " + NameOf(table) + " del destino ya tiene filas");
}

Sums Send(Connection& from, Connection& to, const schema::Table& table, Numbers numbers) {
  Writer writer(to, table, numbers);
  const Sums sent = ForEachRow(from, table, [&](const Recordset& row) {
    writer.Add(RowText(table, row, Moments::AsStored));
  });
  writer.Finish();
  return sent;
}

void CopyTable(Connection& from, Connection& to, const schema::Table& table, Numbers numbers,
               const CopyProgress& progress) {
  if (!RequireRoom(from, to, table)) return;
  const Sums sent = Send(from, to, table, numbers);
  if (!(SumsOf(to, table) == sent)) {
    throw DatabaseError("La copia de " + NameOf(table) + " no coincide con el original");
  }
  progress(table.name, sent.rows());
}

// Codes given twice before they were unique must not keep anybody from a copy.
void AllowRepeatedCodes(Connection& from, Connection& to) {
  const auto repeated =
      from.Execute("SELECT TOP 1 CLI_COD FROM Cli GROUP BY CLI_COD HAVING COUNT(*) > 1");
  if (repeated->Eof()) return;
  if (auto* file = dynamic_cast<SqliteConnection*>(&to)) return file->LetCodesRepeat();
  to.Execute("DROP INDEX ix_Cli_CLI_COD ON dbo.Cli");
  to.Execute("CREATE INDEX ix_Cli_CLI_COD ON dbo.Cli (CLI_COD)");
}

}  // namespace

void CopyStore(Connection& from, Connection& to, Numbers numbers, const CopyProgress& progress) {
  const Transaction reading(from);  // nobody sells meanwhile
  Transaction writing(to);
  DropBlankParameters(to);
  AllowRepeatedCodes(from, to);
  for (const schema::Table& table : schema::Tables()) {
    CopyTable(from, to, table, numbers, progress);
  }
  writing.Commit();
}

bool HoldsRows(Connection& connection) {
  for (const char* name : {"Cav", "DiaCaj", "Cli", "ART"}) {
    if (!IsEmpty(connection, *schema::FindTable(name))) return true;
  }
  return false;
}

void DropBlankParameters(Connection& connection) {
  std::string condition;
  for (const schema::Column& column : schema::FindTable("Parametros")->columns) {
    condition.append(condition.empty() ? "" : " AND ").append(column.name).append(" IS NULL");
  }
  connection.Execute("DELETE FROM Parametros WHERE " + condition);
}

}  // namespace tpv
