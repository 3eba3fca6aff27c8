#include "fiscal/archived_records.h"

#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::fiscal {

ArchivedRecords ReadArchivedRecords(const Desk& desk) {
  constexpr const char* kNoSuchTable = "42S02";
  ArchivedRecords archived;
  try {
    const auto rows = desk.connection.Execute(
        "SELECT Arv_Registros, Arv_ImpRegistros, Arv_Fichero FROM Archivos WHERE Arv_Registros > 0 AND Arv_Modo = " +
        std::to_string(static_cast<int>(ModeOf(desk))) + " AND Arv_UltRegistro > " +
        sql::Number(std::int64_t{desk.parameter("Par_FisRegistro").IntOr(0)}) + " ORDER BY Arv_Id");
    for (; !rows->Eof(); rows->MoveNext()) {
      archived.count += rows->Field(0).ToInt64();
      archived.total.ten_thousandths += rows->Field(1).ToMoney().ten_thousandths;
      archived.files.append(archived.files.empty() ? "" : ", ").append(rows->Field(2).TextOr(""));
    }
  } catch (const DatabaseError& error) {
    if (error.sqlstate() != kNoSuchTable) throw;
  }
  return archived;
}

}  // namespace tpv::fiscal
