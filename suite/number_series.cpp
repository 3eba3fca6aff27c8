#include "suite/number_series.h"

#include <algorithm>

#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::suite {

namespace {

std::int32_t ReadNumber(Connection& connection, const std::string& statement) {
  const auto row = connection.Execute(statement);
  return row->Eof() ? -1 : row->Field(0).IntOr(0);
}

}  // namespace

std::int32_t NextNumber(Connection& connection, std::string_view kind, std::string_view series,
                        const std::string& highest) {
  const std::string where =
      " WHERE cont_tipo = " + sql::Quoted(kind) + " AND cont_serie = " + sql::Quoted(series);
  const std::int32_t last = ReadNumber(connection, "SELECT cont_numero FROM Contadores" + where);
  // Rows written past the counter (by hand, by a copy) push it on.
  const std::int32_t next = std::max(last, ReadNumber(connection, highest)) + 1;
  if (last < 0) {
    connection.Execute("INSERT INTO Contadores (cont_tipo, cont_serie, cont_numero) VALUES (" +
                       sql::Quoted(kind) + ", " + sql::Quoted(series) + ", " +
                       std::to_string(next) + ")");
  } else {
    connection.Execute("UPDATE Contadores SET cont_numero = " + std::to_string(next) + where);
  }
  return next;
}

}  // namespace tpv::suite
