#include "office/warehouses.h"

#include "data/retired.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr FormField kFields[] = {
    {.column = "alm_des", .caption = "Nombre", .asks = Asks::Text, .width = 50,
     .help = "Como se verá en las listas: «Tienda», «Trastienda»…", .required = true, .unique = true},
};

constexpr RecordTable kWarehouse{"alm", "alm_id", "Almacén", kFields};

}  // namespace

ui::Entries WarehouseEntries(Connection& connection) {
  std::vector<std::string> entries;
  const auto rows =
      connection.Execute("SELECT alm_id, alm_des FROM alm WHERE " + NotRetired("alm", "alm_id") + " ORDER BY alm_id");
  for (; !rows->Eof(); rows->MoveNext()) {
    entries.push_back(rows->Field(0).ToText() + " - " + rows->Field(1).TextOr(""));
  }
  return ui::Entries(std::move(entries));
}

WarehouseList::WarehouseList(Context& context)
    : RecordList(context, {"frmAlmacenes", "Almacenes", {{"Número", 1000}, {"Nombre", 5000}}, "alm"}) {}

std::string WarehouseList::Statement() const { return "SELECT alm_id, alm_id, alm_des FROM alm ORDER BY alm_id"; }

std::unique_ptr<RecordForm> WarehouseList::FormOf(std::int32_t id) {
  return std::make_unique<RecordForm>(context(), "frmAlmacen", kWarehouse, id);
}

std::string WarehouseList::Kept(std::int32_t id) {
  const Variant own = Database().Execute("SELECT TOP 1 Par_Alma FROM Parametros")->Field(0);
  return own.IntOr(0) == id ? "Es el almacén de las ventas: elija antes otro en los parámetros" : "";
}

}  // namespace tpv::office
