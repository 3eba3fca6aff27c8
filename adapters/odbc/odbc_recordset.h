// The rows of a statement on the server. A session has one active result: what
// is small is taken at once, which frees the server's locks too; the rest streams
// as it is read, or is taken into memory when another statement needs the session.
#pragma once

#include <deque>
#include <exception>
#include <memory>
#include <string>

#include "adapters/odbc/row_reader.h"
#include "platform/database.h"

namespace tpv::odbc {

class OdbcRecordset;

// Who reads from the session at the moment; null when nobody does.
struct ActiveResult {
  OdbcRecordset* owner = nullptr;
};

class OdbcRecordset : public Recordset {
 public:
  // Takes the first rows. Throws DatabaseError when not even one can be had.
  OdbcRecordset(std::unique_ptr<RowReader> reader, ActiveResult& active);
  ~OdbcRecordset() override { Close(); }

  bool Bof() const override { return total_ == 0; }
  bool Eof() const override { return rows_.empty(); }
  long RecordCount() const override { return reader_ == nullptr ? total_ : -1; }
  std::size_t FieldCount() const override { return columns_.size(); }
  const std::string& FieldName(std::size_t index) const override;
  Variant Field(std::size_t index) const override;
  Variant Field(std::string_view name) const override;
  void MoveNext() override;
  void Close() override;

  // Takes all rows left into memory. A failure shows to the reader who gets
  // there, not to the statement that wants the session.
  void ReadAhead();

 private:
  void ReadOne();
  void Release();
  void RaiseFailure();

  std::unique_ptr<RowReader> reader_;  // null when all rows are here
  ActiveResult& active_;
  std::vector<Column> columns_;
  std::deque<Row> rows_;  // the current row first
  std::exception_ptr failure_;
  long total_ = 0;
};

}  // namespace tpv::odbc
