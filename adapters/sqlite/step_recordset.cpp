#include "adapters/sqlite/step_recordset.h"

#include <utility>

#include "adapters/sqlite/sqlite_connection.h"
#include "base/date_time.h"
#include "base/text.h"

namespace tpv::sqlite {

namespace {

// Valid until the statement steps.
std::string_view TextAt(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

Variant Untyped(sqlite3_stmt* statement, int column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: return Variant(static_cast<std::int64_t>(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT: return Variant(sqlite3_column_double(statement, column));
    case SQLITE_NULL: return {};
    default: return Variant(TextAt(statement, column));
  }
}

Variant Whole(std::int64_t value) {
  if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<std::int32_t>(value));
  return Variant(value);
}

}  // namespace

StepRecordset::StepRecordset(SqliteConnection& connection, std::shared_ptr<CachedShape> shape,
                             std::vector<Variant> literals, StatementPtr statement)
    : TranslatedRecordset(std::move(shape)),
      connection_(connection),
      literals_(std::move(literals)),
      statement_(std::move(statement)) {
  try {
    Step();
  } catch (...) {
    Close();
    throw;
  }
  if (statement_ != nullptr) connection_.open_.insert(this);  // most writes have ended
}

void StepRecordset::Step() {
  switch (sqlite3_step(statement_.get())) {
    case SQLITE_ROW:
      ++read_;
      return;
    case SQLITE_DONE:
      Release();
      return;
    default:
      connection_.RaiseInterruption();
      ThrowLastError(sqlite3_db_handle(statement_.get()));
  }
}

void StepRecordset::MoveNext() {
  if (Eof()) return;
  if (statement_ == nullptr) {
    if (!ahead_.empty()) ahead_.pop_front();
    read_ += ahead_.empty() ? 0 : 1;
    if (ahead_.empty()) RaiseFailure();
    return;
  }
  try {
    Step();
  } catch (...) {
    Close();
    throw;
  }
}

void StepRecordset::ReadAhead() noexcept {
  const long read = read_;
  try {
    while (statement_ != nullptr) {
      ahead_.push_back(SteppedRow());
      Step();
    }
  } catch (...) {
    failure_ = std::current_exception();
    Release();
  }
  read_ = read;
}

void StepRecordset::RaiseFailure() {
  if (failure_ != nullptr) std::rethrow_exception(std::exchange(failure_, nullptr));
}

std::vector<Variant> StepRecordset::SteppedRow() const {
  std::vector<Variant> row;
  const std::size_t count = FieldCount();
  row.reserve(count);
  for (std::size_t i = 0; i < count; ++i) row.push_back(Stepped(i));
  return row;
}

std::vector<Variant> StepRecordset::Fields() const {
  if (statement_ == nullptr || !ahead_.empty()) return Recordset::Fields();
  return SteppedRow();
}

void StepRecordset::Close() {
  ahead_.clear();
  failure_ = nullptr;
  Release();
}

void StepRecordset::Release() {
  if (statement_ == nullptr) return;
  connection_.open_.erase(this);
  StatementCache::Return(*shape_, std::move(statement_));
}

Variant StepRecordset::Value(std::size_t index) const {
  if (!ahead_.empty()) return ahead_.front()[index];
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  return Stepped(index);
}

// Whether a value is null is asked only where it reads like a null's.
Variant StepRecordset::Stepped(std::size_t index) const {
  sqlite3_stmt* statement = statement_.get();
  const int column = static_cast<int>(index);
  const auto null_if_zero = [&](auto number, auto value) {
    const bool null = number == 0 && sqlite3_column_type(statement, column) == SQLITE_NULL;
    return null ? Variant() : Variant(value);
  };
  switch (shape_->translation.columns[index].type) {
    case dialect::SqlType::Bit: {
      const int bit = sqlite3_column_int(statement, column);
      return null_if_zero(bit, bit != 0);
    }
    case dialect::SqlType::Int: {
      const std::int64_t whole = sqlite3_column_int64(statement, column);
      return null_if_zero(whole, Whole(whole));
    }
    case dialect::SqlType::Float: {
      const double number = sqlite3_column_double(statement, column);
      return null_if_zero(number, number);
    }
    case dialect::SqlType::Money: {
      const double number = sqlite3_column_double(statement, column);
      return null_if_zero(number, Money::FromDouble(number));
    }
    case dialect::SqlType::DateTime: {
      const std::string_view text = TextAt(statement, column);
      if (text.data() == nullptr) return {};
      const auto date = ParseIso(text);
      return date ? Variant(*date) : Variant(text);
    }
    case dialect::SqlType::Text: {
      const std::string_view text = TextAt(statement, column);
      return text.data() == nullptr ? Variant() : Variant(text);
    }
    default:
      return Untyped(statement, column);
  }
}

}  // namespace tpv::sqlite
