#include "adapters/odbc/row_reader.h"

#include <array>

#include "adapters/odbc/decimal.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

std::int64_t WholePart(const Variant& decimal) {
  return decimal.IsMoney() ? decimal.ToMoney().ten_thousandths / 10000 : decimal.ToInt64();
}

Variant Whole(std::int64_t value) {
  if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<std::int32_t>(value));
  return Variant(value);
}

DateTime ToDateTime(const SQL_TIMESTAMP_STRUCT& stamp) {
  const DateTime second{stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second};
  const int millisecond = static_cast<int>((stamp.fraction + 500'000) / 1'000'000);
  DateTime moment = millisecond == 1000 ? AddSeconds(second, 1) : second;
  moment.millisecond = millisecond % 1000;
  return moment;
}

}  // namespace

RowReader::RowReader(Link& link, StatementHandle statement)
    : link_(link), statement_(std::move(statement)) {
  if (statement_.get() == nullptr) return;
  SQLSMALLINT count = 0;
  link_.Check(SQLNumResultCols(statement_.get(), &count), SQL_HANDLE_STMT, statement_.get());
  for (SQLUSMALLINT number = 1; number <= count; ++number) columns_.push_back(Describe(number));
}

Column RowReader::Describe(SQLUSMALLINT number) {
  std::array<SQLCHAR, 512> name{};
  Column column{};
  SQLSMALLINT length = 0;
  SQLULEN size = 0;
  SQLSMALLINT nullable = 0;
  link_.Check(SQLDescribeCol(statement_.get(), number, name.data(), name.size(), &length,
                             &column.type, &size, &column.scale, &nullable),
              SQL_HANDLE_STMT, statement_.get());
  column.name = reinterpret_cast<const char*>(name.data());
  return column;
}

bool RowReader::Next(Row& row) {
  if (columns_.empty() || !link_.Fetch(statement_)) return false;
  row.clear();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    row.push_back(Value(static_cast<SQLUSMALLINT>(i + 1), columns_[i]));
  }
  return true;
}

// False for a null.
template <typename Plain>
bool RowReader::Get(SQLUSMALLINT number, SQLSMALLINT kind, Plain& value) {
  SQLLEN length = 0;
  link_.Check(SQLGetData(statement_.get(), number, kind, &value, sizeof value, &length),
              SQL_HANDLE_STMT, statement_.get());
  return length != SQL_NULL_DATA;
}

bool RowReader::GetText(SQLUSMALLINT number, std::string& text) {
  std::array<char, 2048> chunk;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement_.get(), number, SQL_C_CHAR, chunk.data(),
                                        chunk.size(), &length);
    if (result == SQL_NO_DATA) return true;
    link_.Check(result, SQL_HANDLE_STMT, statement_.get());
    if (length == SQL_NULL_DATA) return false;
    const bool cut = length == SQL_NO_TOTAL || length >= static_cast<SQLLEN>(chunk.size());
    text.append(chunk.data(), cut ? chunk.size() - 1 : static_cast<std::size_t>(length));
    if (!cut) return true;
  }
}

Variant RowReader::Decimal(SQLUSMALLINT number, const Column& column) {
  std::string text;
  if (!GetText(number, text)) return {};
  const Variant value = ReadDecimal(text);
  return column.scale == 0 ? Whole(WholePart(value)) : value;
}

Variant RowReader::Moment(SQLUSMALLINT number) {
  SQL_TIMESTAMP_STRUCT stamp{};
  if (!Get(number, SQL_C_TYPE_TIMESTAMP, stamp)) return {};
  return Variant(ToDateTime(stamp));
}

Variant RowReader::Value(SQLUSMALLINT number, const Column& column) {
  const auto plain = [this, number](SQLSMALLINT kind, auto value) {
    return Get(number, kind, value) ? Variant(value) : Variant();
  };
  switch (column.type) {
    case SQL_BIT: {
      unsigned char bit = 0;
      return Get(number, SQL_C_BIT, bit) ? Variant(bit != 0) : Variant();
    }
    case SQL_TINYINT:
    case SQL_SMALLINT:
      return plain(SQL_C_SSHORT, std::int16_t{});
    case SQL_INTEGER:
      return plain(SQL_C_SLONG, std::int32_t{});
    case SQL_BIGINT:
      return plain(SQL_C_SBIGINT, std::int64_t{});
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return plain(SQL_C_DOUBLE, double{});
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return Decimal(number, column);
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return Moment(number);
    default: {
      std::string text;
      return GetText(number, text) ? Variant(ValidUtf8(text)) : Variant();
    }
  }
}

}  // namespace tpv::odbc
