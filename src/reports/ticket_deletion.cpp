#include "reports/ticket_deletion.h"

#include <vector>

#include "base/mask.h"
#include "context/context.h"
#include "data/sales_in_progress.h"
#include "data/sql_text.h"
#include "fiscal/issuing.h"
#include "platform/database.h"
#include "sale/sale_storage.h"

namespace tpv {

std::string SharedCollection(Connection& connection, std::int32_t sale_id) {
  const std::string id = sql::Number(std::int64_t{sale_id});
  const auto entry = connection.Execute(
      "SELECT TOP 1 DiaCaj_Id, DiaCaj_Fecha FROM DiaCaj INNER JOIN Tco ON Tco_IdDiaCaj = DiaCaj_Id "
      "WHERE Tco_IdCav <> " + id +
      " AND DiaCaj_Id IN (SELECT Tco_IdDiaCaj FROM Tco WHERE Tco_IdCav = " + id + ")");
  if (entry->Eof()) return {};
  return "nº " + entry->Field(0).ToText() + " del " + Format(entry->Field(1), "DD/MM/YYYY HH:MM");
}

void DeleteTicket(Context& context, std::int32_t sale_id) {
  Connection& connection = context.Database();
  const std::vector<std::int32_t> lines = LinesOf(context, sale_id);
  const std::string id = sql::Number(std::int64_t{sale_id});
  fiscal::RecordDeletion(fiscal::DeskOf(context), sale_id);
  connection.Execute("DELETE FROM Cav WHERE Cav_Id = " + id);
  connection.Execute("DELETE FROM Lav WHERE Lav_IdCav = " + id);
  std::vector<std::int64_t> entries;
  const auto links = connection.Execute("SELECT * FROM Tco WHERE Tco_IdCav = " + id);
  for (; !links->Eof(); links->MoveNext()) entries.push_back(links->Field("Tco_IdDiaCaj").ToInt64());
  for (const std::int64_t entry : entries) {
    connection.Execute("DELETE FROM DiaCaj WHERE Diacaj_Id = " + sql::Number(entry));
  }
  connection.Execute("DELETE FROM Tco WHERE Tco_IdCav = " + id);
  DeleteLines(context, lines);
  UnregisterSale(connection, sale_id);
}

}  // namespace tpv
