#include "adapters/odbc/odbc_recordset.h"

#include <utility>

#include "base/text.h"

namespace tpv::odbc {

namespace {

constexpr std::size_t kAtOnce = 64;

}  // namespace

OdbcRecordset::OdbcRecordset(std::unique_ptr<RowReader> reader, ActiveResult& active)
    : reader_(std::move(reader)), active_(active), columns_(reader_->columns()) {
  active_.owner = this;
  while (reader_ != nullptr && rows_.size() < kAtOnce) ReadOne();
  if (rows_.empty()) RaiseFailure();
}

void OdbcRecordset::ReadOne() {
  try {
    Row row;
    if (reader_->Next(row)) {
      rows_.push_back(std::move(row));
      ++total_;
    } else {
      Release();
    }
  } catch (const DatabaseError&) {
    failure_ = std::current_exception();
    Release();
  }
}

void OdbcRecordset::RaiseFailure() {
  if (failure_ != nullptr) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void OdbcRecordset::MoveNext() {
  if (Eof()) return;
  rows_.pop_front();
  if (rows_.empty() && reader_ != nullptr) ReadOne();
  if (rows_.empty()) RaiseFailure();
}

void OdbcRecordset::ReadAhead() {
  while (reader_ != nullptr) ReadOne();
}

void OdbcRecordset::Close() {
  rows_.clear();
  failure_ = nullptr;
  Release();
}

void OdbcRecordset::Release() {
  if (reader_ == nullptr) return;
  reader_.reset();
  active_.owner = nullptr;
}

const std::string& OdbcRecordset::FieldName(std::size_t index) const {
  if (index >= FieldCount()) throw DatabaseError("No existe el campo " + std::to_string(index));
  return columns_[index].name;
}

Variant OdbcRecordset::Field(std::size_t index) const {
  const std::string& name = FieldName(index);
  if (Eof()) throw DatabaseError("No hay fila actual para leer «" + name + "»");
  return rows_.front()[index];
}

Variant OdbcRecordset::Field(std::string_view name) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (EqualNoCase(columns_[i].name, name)) return Field(i);
  }
  throw DatabaseError("No existe el campo «" + std::string(name) + "»", "42S22");
}

}  // namespace tpv::odbc
