#include "suite/reports.h"

#include <algorithm>
#include <limits>

#include "data/sql_text.h"
#include "platform/database.h"
#include "platform/report.h"
#include "suite/closures_report.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {

constexpr const char* kClass = "ZRReportes.ZRReports";

// Of the closures listed and those between them, what was counted.
CountedDifferences ReadDifferences(Object& rows, Connection& connection) {
  std::int64_t first = std::numeric_limits<std::int32_t>::max();
  std::int64_t last = 0;
  for (rows.Invoke("MoveFirst"); !rows.Get("EOF").ToBool(); rows.Invoke("MoveNext")) {
    const std::int64_t id = rows.Invoke("Fields", "DiaCaj_Id").IntOr(0);
    first = std::min(first, id);
    last = std::max(last, id);
  }
  const auto counts = connection.Execute(
      "SELECT Arq_IdCierre, Arq_Diferencia FROM Arqueos WHERE Arq_IdCierre BETWEEN " +
      sql::Number(first) + " AND " + sql::Number(last));
  CountedDifferences differences;
  for (; !counts->Eof(); counts->MoveNext()) {
    differences[counts->Field("Arq_IdCierre").IntOr(0)] =
        counts->Field("Arq_Diferencia").NumberOr(0);
  }
  return differences;
}

}  // namespace

Reports::Reports(Ports& ports) : LateBound(kClass), ports_(ports) {
  Properties(Kind::Object, {"MyBd"});
  Define("ZTPVCierresCaja", 2, 2,
         [this](std::span<Variant> arguments) { return ShowClosures(*arguments[1].ToObject()); });
}

Variant Reports::ShowClosures(Object& rows) {
  DatabaseObject& database = DatabaseOf(*this, kClass);
  const std::string shop = database.Parametro("Par_Nombre").TextOr("");
  const CountedDifferences differences = ReadDifferences(rows, database.Conexion());
  const std::string path =
      ports_.reports.Show(ClosuresReport(rows, differences, shop), "cierres-de-caja");
  return Variant("Informe guardado en " + path);
}

}  // namespace tpv::suite
