// The columns of a record set, as the translation of its statement gives them.
#pragma once

#include <memory>

#include "adapters/sqlite/statement_cache.h"
#include "platform/database.h"

namespace tpv::sqlite {

class TranslatedRecordset : public Recordset {
 public:
  explicit TranslatedRecordset(std::shared_ptr<CachedShape> shape) : shape_(std::move(shape)) {}

  std::size_t FieldCount() const final { return shape_->translation.columns.size(); }
  const std::string& FieldName(std::size_t index) const final {
    if (index >= FieldCount()) throw DatabaseError("No existe el campo " + std::to_string(index));
    return shape_->translation.columns[index].name;
  }
  Variant Field(std::size_t index) const final {
    const std::string& name = FieldName(index);
    if (Eof()) throw DatabaseError("No hay fila actual para leer «" + name + "»");
    return Value(index);
  }
  Variant Field(std::string_view name) const final { return Field(IndexOf(name)); }

 protected:
  // Of the current row; the index is in range.
  virtual Variant Value(std::size_t index) const = 0;

  std::shared_ptr<CachedShape> shape_;
};

}  // namespace tpv::sqlite
