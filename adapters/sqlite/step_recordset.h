// The rows of a statement, stepped as they are read; before its connection begins
// or undoes a transaction, what is left is read ahead, since its snapshot ends.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "adapters/sqlite/statement_cache.h"
#include "platform/database.h"

namespace tpv {
class SqliteConnection;
}

namespace tpv::sqlite {

class StepRecordset : public Recordset {
 public:
  // Runs the statement to its first row. Throws DatabaseError.
  StepRecordset(SqliteConnection& connection, std::shared_ptr<CachedShape> shape,
                StatementPtr statement);
  ~StepRecordset() override { Close(); }

  bool Bof() const override { return read_ == 0; }
  bool Eof() const override { return statement_ == nullptr && ahead_.empty(); }
  long RecordCount() const override { return Eof() ? read_ : -1; }
  std::size_t FieldCount() const override { return shape_->translation.columns.size(); }
  const std::string& FieldName(std::size_t index) const override;
  Variant Field(std::size_t index) const override;
  Variant Field(std::string_view name) const override;
  void MoveNext() override;
  void Close() override;

  // Reads the current row and all behind it into memory.
  void ReadAhead();

 private:
  void Step();
  void Release();
  Variant Stepped(std::size_t index) const;

  SqliteConnection& connection_;
  std::shared_ptr<CachedShape> shape_;
  StatementPtr statement_;
  std::deque<std::vector<Variant>> ahead_;  // the current row first, once read ahead
  long read_ = 0;
};

}  // namespace tpv::sqlite
