#include "data/retired.h"

#include "context/context.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv {

namespace {

std::string OfTable(std::string_view table) { return " FROM Bajas WHERE baja_tabla = " + sql::Quoted(table); }

std::string OfRecord(std::string_view table, std::int32_t id) {
  return OfTable(table) + " AND baja_idreg = " + sql::Number(std::int64_t{id});
}

}  // namespace

bool IsRetired(Connection& connection, std::string_view table, std::int32_t id) {
  return !connection.Execute("SELECT TOP 1 baja_idreg" + OfRecord(table, id))->Eof();
}

std::set<std::int32_t> RetiredOf(Connection& connection, std::string_view table) {
  std::set<std::int32_t> retired;
  const auto rows = connection.Execute("SELECT baja_idreg" + OfTable(table));
  for (; !rows->Eof(); rows->MoveNext()) retired.insert(rows->Field(0).ToInt32());
  return retired;
}

bool IsRetired(Context& context, std::string_view table, std::int32_t id) {
  Connection& connection = context.Database();
  return connection.KeepsLists() ? context.retired.Of(connection, table).contains(id)
                                 : IsRetired(connection, table, id);
}

std::set<std::int32_t> RetiredOf(Context& context, std::string_view table) {
  Connection& connection = context.Database();
  return connection.KeepsLists() ? context.retired.Of(connection, table) : RetiredOf(connection, table);
}

std::string NotRetired(std::string_view table, std::string_view id_column) {
  return std::string(id_column) + " NOT IN (SELECT baja_idreg" + OfTable(table) + ")";
}

void Retire(Connection& connection, std::string_view table, std::int32_t id) {
  if (IsRetired(connection, table, id)) return;
  connection.Execute("INSERT INTO Bajas (baja_tabla, baja_idreg) VALUES (" + sql::Quoted(table) + ", " +
                     sql::Number(std::int64_t{id}) + ")");
}

void TakeBack(Connection& connection, std::string_view table, std::int32_t id) {
  connection.Execute("DELETE" + OfRecord(table, id));
}

}  // namespace tpv
