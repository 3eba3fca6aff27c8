// The rows of a statement, stepped as they are read; before its connection begins
// or undoes a transaction, what is left is read ahead, since its snapshot ends.
#pragma once

#include <exception>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "adapters/sqlite/translated_recordset.h"

namespace tpv {
class SqliteConnection;
}

namespace tpv::sqlite {

class StepRecordset : public TranslatedRecordset {
 public:
  // Runs the statement, bound to those literals, to its first row. Throws DatabaseError.
  StepRecordset(SqliteConnection& connection, std::shared_ptr<CachedShape> shape,
                std::vector<Variant> literals, StatementPtr statement);
  ~StepRecordset() override { Close(); }

  bool Bof() const override { return read_ == 0; }
  bool Eof() const override { return statement_ == nullptr && ahead_.empty() && failure_ == nullptr; }
  long RecordCount() const override { return Eof() ? read_ : -1; }
  std::vector<Variant> Fields() const override;
  void MoveNext() override;
  void Close() override;

  // Reads the current row and all behind it into memory. A row that cannot be read
  // ends it: that is thrown when it is come to, and whoever reads may never come there.
  void ReadAhead() noexcept;

 private:
  void Step();
  void Release();
  void RaiseFailure();
  Variant Value(std::size_t index) const override;
  Variant Stepped(std::size_t index) const;
  std::vector<Variant> SteppedRow() const;

  SqliteConnection& connection_;
  std::vector<Variant> literals_;  // whose texts the statement reads
  StatementPtr statement_;
  std::list<std::vector<Variant>> ahead_;  // the current row first, once read ahead
  std::exception_ptr failure_;              // of the row behind them
  long read_ = 0;
};

}  // namespace tpv::sqlite
