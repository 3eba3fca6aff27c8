#include "suite/reports.h"

#include "platform/report.h"
#include "suite/closures_report.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {
constexpr const char* kClass = "ZRReportes.ZRReports";
}

Reports::Reports(Ports& ports) : LateBound(kClass), ports_(ports) {
  Properties(Kind::Object, {"MyBd"});
  Define("ZTPVCierresCaja", 2, 2, [this](std::span<Variant> arguments) {
    return ShowClosures(*arguments[1].ToObject());
  });
}

Variant Reports::ShowClosures(Object& rows) {
  const std::string shop = DatabaseOf(*this, kClass).Parametro("Par_Nombre").TextOr("");
  const std::string path = ports_.reports.Show(ClosuresReport(rows, shop), "cierres-de-caja");
  return Variant("Informe guardado en " + path);
}

}  // namespace tpv::suite
