#include "data/sales_in_progress.h"

#include <algorithm>

#include "base/mask.h"
#include "data/sql_text.h"
#include "data/statements.h"

namespace tpv {

namespace {

[[noreturn]] void NameMissingTable(const DatabaseError& error) {
  constexpr const char* kNoSuchTable = "42S02";
  if (error.sqlstate() != kNoSuchTable) throw error;
  throw DatabaseError(
      "Al almacén le falta la tabla VentasEnCurso. El administrador debe crearla con «tpv store "
      "create» o con la sentencia de docs/sql-server.md",
      error.sqlstate(), error.native());
}

std::vector<SaleInProgress> Read(Connection& connection, const std::string& condition) {
  std::vector<SaleInProgress> sales;
  const auto rows = connection.Execute(
      "SELECT Vec_IdCav, " + std::string(kTicketReference) +
      " AS Ticket, Vec_Caja, Vec_Agente, Vec_Inicio FROM VentasEnCurso "
      "INNER JOIN Cav ON Cav_Id = Vec_IdCav" + condition + " ORDER BY Vec_IdCav");
  for (; !rows->Eof(); rows->MoveNext()) {
    const Variant since = rows->Field("Vec_Inicio");
    sales.push_back({rows->Field("Vec_IdCav").ToInt32(), rows->Field("Ticket").TextOr(""),
                     rows->Field("Vec_Caja").IntOr(0), rows->Field("Vec_Agente").IntOr(0),
                     since.IsNull() ? DateTime{} : since.ToDate()});
  }
  return sales;
}

}  // namespace

void RegisterSale(Connection& connection, std::int32_t sale_id, const std::string& till,
                  std::int32_t agent_id) {
  try {
    connection.Execute("INSERT INTO VentasEnCurso (Vec_IdCav, Vec_Caja, Vec_Agente) VALUES (" +
                       sql::Number(std::int64_t{sale_id}) + ", " + sql::WholeNumber(till) + ", " +
                       sql::Number(std::int64_t{agent_id}) + ")");
  } catch (const DatabaseError& error) {
    NameMissingTable(error);
  }
}

void UnregisterSale(Connection& connection, std::int32_t sale_id) {
  connection.Execute("DELETE FROM VentasEnCurso WHERE Vec_IdCav = " +
                     sql::Number(std::int64_t{sale_id}));
}

void HandSaleTo(Connection& connection, const SaleInProgress& sale, std::int32_t till) {
  const std::string number = sql::Number(std::int64_t{till});
  const std::string of_sale = " = " + sql::Number(std::int64_t{sale.sale});
  const DateTime now = connection.Execute("SELECT Getdate()")->Field(0).ToDate();
  const DateTime since = std::max(now, AddSeconds(sale.since, 1));
  connection.Execute("UPDATE VentasEnCurso SET Vec_Caja = " + number + ", Vec_Inicio = '" +
                     ToDayFirstSeconds(since) + "' WHERE Vec_IdCav" + of_sale);
  // The reference goes on saying which till had a parked sale.
  const std::string reference = till == SaleInProgress::kNoTill ? "" : ", Cav_Ref = '" + number + "'";
  connection.Execute("UPDATE Cav SET Cav_Caja = " + number + reference + " WHERE Cav_Id" + of_sale);
}

std::optional<SaleInProgress> SaleInProgressOf(Connection& connection, std::int32_t sale_id) {
  const auto sales = Read(connection, " WHERE Cav_Id = " + sql::Number(std::int64_t{sale_id}));
  return sales.empty() ? std::nullopt : std::optional(sales.front());
}

std::vector<SaleInProgress> SalesInProgress(Connection& connection, std::int32_t till) {
  return Read(connection, " WHERE Vec_Caja = " + sql::Number(std::int64_t{till}));
}

std::vector<SaleInProgress> SalesInProgressAmong(Connection& connection,
                                                 const std::string& tickets) {
  return Read(connection, tickets);
}

std::set<std::int32_t> IdsOfSalesInProgress(Connection& connection) {
  std::set<std::int32_t> ids;
  const auto rows = connection.Execute("SELECT Vec_IdCav FROM VentasEnCurso");
  for (; !rows->Eof(); rows->MoveNext()) ids.insert(rows->Field(0).ToInt32());
  return ids;
}

std::string Described(const SaleInProgress& sale) {
  return sale.ticket + ", del " + FormatDate(sale.since, "DD/MM/YYYY HH:MM");
}

}  // namespace tpv
