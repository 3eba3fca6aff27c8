// Reads the rows of a statement exactly: money as money, moments to the
// millisecond, texts of any length. For the adapter's own files.
#pragma once

#include <string>
#include <vector>

#include "adapters/odbc/link.h"
#include "base/variant.h"

namespace tpv::odbc {

using Row = std::vector<Variant>;

struct Column {
  std::string name;
  SQLSMALLINT type;
  SQLSMALLINT scale;
};

class RowReader {
 public:
  RowReader(Link& link, StatementHandle statement);

  const std::vector<Column>& columns() const { return columns_; }
  // The next row into `row`; false at the end. Throws DatabaseError.
  bool Next(Row& row);

 private:
  Column Describe(SQLUSMALLINT number);
  Variant Value(SQLUSMALLINT number, const Column& column);
  template <typename Plain>
  bool Get(SQLUSMALLINT number, SQLSMALLINT kind, Plain& value);
  bool GetText(SQLUSMALLINT number, std::string& text);
  Variant Decimal(SQLUSMALLINT number, const Column& column);
  Variant Moment(SQLUSMALLINT number);

  Link& link_;
  StatementHandle statement_;
  std::vector<Column> columns_;
};

}  // namespace tpv::odbc
