#include "adapters/sqlite/statement_cache.h"

#include <iterator>

#include "adapters/sqlite/dialect/scanner.h"
#include "platform/database.h"

namespace tpv::sqlite {

namespace {

// Of what statements can meet, since the translation has checked the rest.
std::string InSpanish(const std::string& message) {
  const bool deep = message == "parser stack overflow" || message.starts_with("Expression tree is too");
  return deep ? "La sentencia anida o encadena demasiadas expresiones" : message;
}

std::string Readable(sqlite3* handle, int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "El almacén está ocupado por otra caja; inténtelo de nuevo";
    case SQLITE_READONLY:
      return "El almacén es de solo lectura";
    case SQLITE_FULL:
      return "No queda espacio en el disco del almacén";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "El fichero no es un almacén válido o está dañado";
    case SQLITE_CANTOPEN:
      return "No se puede abrir el almacén";
    case SQLITE_IOERR:
      return std::string("Error de disco en el almacén: ") + sqlite3_errmsg(handle);
    default:
      return InSpanish(sqlite3_errmsg(handle));
  }
}

}  // namespace

void ThrowLastError(sqlite3* handle) {
  const int code = sqlite3_extended_errcode(handle);
  throw DatabaseError(Readable(handle, code), "HY000", code);
}

std::shared_ptr<CachedShape> StatementCache::Known(std::string_view shape) {
  const auto found = by_shape_.find(shape);
  if (found == by_shape_.end()) return nullptr;
  by_use_.splice(by_use_.begin(), by_use_, found->second);
  return found->second->second;
}

std::shared_ptr<CachedShape> StatementCache::FindWhole(std::string_view text) {
  auto entry = Known(text);
  return entry && entry->whole ? entry : nullptr;
}

std::shared_ptr<CachedShape> StatementCache::Find(const std::string& shape) {
  if (auto known = Known(shape)) return known;
  constexpr char kMarks[] = {dialect::kWholeMark, dialect::kDecimalMark, dialect::kTextMark};
  auto entry = std::make_shared<CachedShape>();
  entry->whole = shape.find_first_of({kMarks, std::size(kMarks)}) == std::string::npos;
  entry->translation = dialect::Translate(shape);
  by_use_.emplace_front(shape, entry);
  by_shape_[by_use_.front().first] = by_use_.begin();
  if (by_use_.size() > kMost) {
    by_shape_.erase(by_use_.back().first);
    by_use_.pop_back();
  }
  return entry;
}

StatementPtr StatementCache::Take(CachedShape& shape) {
  if (!shape.idle.empty()) {
    StatementPtr statement = std::move(shape.idle.back());
    shape.idle.pop_back();
    return statement;
  }
  const std::string& text = shape.translation.text;
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v3(handle_, text.data(), static_cast<int>(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (result != SQLITE_OK) ThrowLastError(handle_);
  return StatementPtr(statement);
}

void StatementCache::Return(CachedShape& shape, StatementPtr statement) {
  sqlite3_reset(statement.get());
  sqlite3_clear_bindings(statement.get());
  shape.idle.push_back(std::move(statement));
}

}  // namespace tpv::sqlite
