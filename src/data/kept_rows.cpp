#include "data/kept_rows.h"

#include "base/text.h"

namespace tpv {

namespace {

[[noreturn]] void Unknown(std::string_view member) {
  throw ObjectError("Las filas no tienen «" + std::string(member) + "»");
}

}  // namespace

KeptRows::KeptRows(std::vector<std::string> fields, Rows rows)
    : fields_(std::move(fields)), rows_(std::move(rows)) {}

Variant KeptRows::Get(std::string_view property) {
  if (EqualNoCase(property, "EOF")) return Variant(current_ >= rows_.size());
  if (EqualNoCase(property, "BOF")) return Variant(rows_.empty());
  if (EqualNoCase(property, "RecordCount")) return Variant(static_cast<std::int64_t>(rows_.size()));
  Unknown(property);
}

void KeptRows::Put(std::string_view property, const Variant&) { Unknown(property); }

Variant KeptRows::Call(std::string_view method, std::span<Variant> arguments) {
  if (EqualNoCase(method, "Fields") && arguments.size() == 1) return Field(arguments[0].ToText());
  if (EqualNoCase(method, "MoveFirst")) {
    current_ = 0;
  } else if (EqualNoCase(method, "MoveNext")) {
    if (current_ < rows_.size()) ++current_;
  } else {
    Unknown(method);
  }
  return {};
}

Variant KeptRows::Field(std::string_view field) const {
  if (current_ >= rows_.size()) throw ObjectError("No quedan filas");
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (EqualNoCase(fields_[i], field)) return rows_[current_][i];
  }
  Unknown(field);
}

}  // namespace tpv
