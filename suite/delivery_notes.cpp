#include "suite/delivery_notes.h"

#include "base/text.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "suite/number_series.h"
#include "suite/own_transaction.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {

constexpr const char* kClass = "ZRALBARANES.ZRAlbVentas";

std::int32_t NewId(Connection& connection, const char* statement) {
  return connection.Execute(statement)->Field(0).ToInt32();
}

}  // namespace

DeliveryNotes::DeliveryNotes() : LateBound(kClass) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Text, {"serie", "Ref", "Observa", "Transp", "NFiscal", "NCom", "Sg", "Nombre",
                          "Escalera", "Piso", "Puerta", "Cp", "Pais", "Provincia", "Poblacion",
                          "SProvincia", "SPais", "SCliDoc", "Codart", "Des", "Ampliades", "Sped",
                          "Sref", "Lote", "SerieArticulo"});
  Properties(Kind::Whole, {"Numero", "idCli", "IdUsu", "valorado", "IdFco", "IdTiva", "Situa",
                           "IdFactura", "Num", "IdAgente", "IdAlmacen", "idArt", "tiva", "formula",
                           "IdExis", "IdDoc"});
  Properties(Kind::Amount, {"Dto1", "Dto2", "ComisionAgente", "Uni", "Precio", "Dto1Linea",
                            "Dto2Linea", "Importe", "Bultos", "Largo", "Ancho", "Espesor",
                            "Externo", "Interno", "CantidadK"});
  Define("GrabaCabeceraAlbaran", 4, 4, [this](auto arguments) { return StoreHeader(arguments); });
  Define("GrabaLineaAlbaran", 4, 4, [this](auto arguments) { return StoreLine(arguments); });
  Define("borraLineaAlbaran", 1, 2, [this](auto arguments) { return DeleteLine(arguments); });
}

Connection& DeliveryNotes::Database() { return DatabaseOf(*this, kClass).Conexion(); }

Variant DeliveryNotes::StoreHeader(std::span<Variant> arguments) {
  OwnTransaction transaction(Database());
  const std::int32_t id = InsertHeader(Trim(arguments[2].ToText()));
  transaction.Commit();
  return Variant(id);
}

std::int32_t DeliveryNotes::InsertHeader(const std::string& date) {
  Connection& connection = Database();
  const std::string series = Text("serie");
  std::int32_t number = Whole("Numero");
  if (number == 0) {
    number = NextNumber(connection, "ALBVENTA", series,
                        "SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = " + sql::Quoted(series));
  }
  RowBuilder& row = DatabaseOf(*this, kClass).NuevaSentencia();
  row.Tabla("Cav");
  row.BeginTrans(false);
  const auto text = [&](const char* column, const char* property, std::size_t most) {
    row.Add(column, ValueKind::Text, Variant(Left(Text(property), most)));
  };
  row.Add("Cav_Serie", ValueKind::Text, Variant(series));
  row.Add("Cav_Numero", ValueKind::Whole, Variant(number));
  if (!date.empty()) row.Add("Cav_Fecha", ValueKind::Date, Variant(date));
  row.Add("Cav_Ref", ValueKind::Text, Get("Ref"));
  row.Add("Cav_Agente", ValueKind::Whole, Get("IdAgente"));
  row.Add("Cav_IdCli", ValueKind::Whole, Get("idCli"));
  // A name of several surnames may be longer than what a ticket keeps of it.
  text("Cav_NFiscal", "NFiscal", 50);
  text("Cav_NCom", "NCom", 50);
  row.Add("Cav_CliDoc", ValueKind::Text, Get("SCliDoc"));
  row.Add("Cav_SG", ValueKind::Text, Get("Sg"));
  row.Add("Cav_NOMBRE", ValueKind::Text, Get("Nombre"));
  row.Add("Cav_Num", ValueKind::Whole, Get("Num"));
  row.Add("Cav_ESCALERA", ValueKind::Text, Get("Escalera"));
  row.Add("Cav_Piso", ValueKind::Text, Get("Piso"));
  row.Add("Cav_Puerta", ValueKind::Text, Get("Puerta"));
  row.Add("Cav_Cp", ValueKind::Text, Get("Cp"));
  row.Add("Cav_POBLACION", ValueKind::Text, Get("Poblacion"));
  row.Add("Cav_Pais", ValueKind::Text, Get("Pais"));
  row.Add("Cav_PROVINCIA", ValueKind::Text, Get("Provincia"));
  row.Add("Cav_SPais", ValueKind::Text, Get("SPais"));
  row.Add("Cav_SProv", ValueKind::Text, Get("SProvincia"));
  row.Add("Cav_Situa", ValueKind::Whole, Get("Situa"));
  row.Add("Cav_IdFactura", ValueKind::Whole, Get("IdFactura"));
  std::string error;
  if (!row.Insert(error)) throw ObjectError("No se pudo grabar la cabecera: " + error);
  return NewId(connection, "SELECT MAX(Cav_Id) FROM Cav");
}

Variant DeliveryNotes::StoreLine(std::span<Variant> arguments) {
  OwnTransaction transaction(Database());
  const std::int32_t line = WriteLine(arguments[0].ToInt32(), arguments[1].ToInt32());
  transaction.Commit();
  arguments[1] = Variant(line);
  return Variant(line);
}

std::int32_t DeliveryNotes::WriteLine(std::int32_t sale, std::int32_t line) {
  Connection& connection = Database();
  RowBuilder& row = DatabaseOf(*this, kClass).NuevaSentencia();
  row.Tabla("Lav");
  row.BeginTrans(false);
  if (line == 0) row.Add("Lav_IdCav", ValueKind::Whole, Variant(sale));
  row.Add("Lav_Idart", ValueKind::Whole, Get("idArt"));
  row.Add("Lav_CodArt", ValueKind::Text, Get("Codart"));
  row.Add("Lav_Des", ValueKind::Text, Get("Des"));
  row.Add("Lav_Uni", ValueKind::Amount, Get("Uni"));
  row.Add("Lav_precio", ValueKind::Amount, Get("Precio"));
  row.Add("Lav_DTo1", ValueKind::Amount, Get("Dto1Linea"));
  row.Add("Lav_Importe", ValueKind::Amount, Get("Importe"));
  row.Add("Lav_Tiva", ValueKind::Whole, Get("tiva"));
  if (line != 0) row.Where(" WHERE Lav_Id = " + sql::Number(std::int64_t{line}));
  std::string error;
  const bool done = line == 0 ? row.Insert(error) : row.Update(error);
  if (!done) throw ObjectError("No se pudo grabar la línea: " + error);
  if (line == 0) {
    line = NewId(connection, "SELECT MAX(Lav_Id) FROM Lav");
  } else {
    GiveStockBack(line);
  }
  TakeStock(line, Whole("idArt"), Whole("IdAlmacen"), Amount("Uni"));
  return line;
}

Variant DeliveryNotes::DeleteLine(std::span<Variant> arguments) {
  const std::int32_t line = arguments[0].ToInt32();
  OwnTransaction transaction(Database());
  GiveStockBack(line);
  Database().Execute("DELETE FROM Lav WHERE Lav_Id = " + sql::Number(std::int64_t{line}));
  transaction.Commit();
  return {};
}

void DeliveryNotes::TakeStock(std::int32_t line, std::int32_t article, std::int32_t warehouse,
                              double units) {
  if (warehouse == 0) return;
  Database().Execute("INSERT INTO Movi (movi_idlav, movi_idart, movi_idalma, movi_uni) VALUES (" +
                     std::to_string(line) + ", " + std::to_string(article) + ", " +
                     std::to_string(warehouse) + ", " + sql::Number(units) + ")");
  ChangeStock(article, warehouse, -units);
}

void DeliveryNotes::GiveStockBack(std::int32_t line) {
  const std::string where = " WHERE movi_idlav = " + std::to_string(line);
  std::int32_t article = 0;
  std::int32_t warehouse = 0;
  double units = 0;
  {
    const auto row =
        Database().Execute("SELECT movi_idart, movi_idalma, movi_uni FROM Movi" + where);
    if (row->Eof()) return;
    article = row->Field(0).IntOr(0);
    warehouse = row->Field(1).IntOr(0);
    units = row->Field(2).NumberOr(0);
  }
  Database().Execute("DELETE FROM Movi" + where);
  ChangeStock(article, warehouse, units);
}

void DeliveryNotes::ChangeStock(std::int32_t article, std::int32_t warehouse, double units) {
  const std::string where = " WHERE exis_idart = " + std::to_string(article) +
                            " AND exis_idalma = " + std::to_string(warehouse);
  if (Database().Execute("SELECT TOP 1 exis_uni FROM Exis" + where)->Eof()) {
    Database().Execute("INSERT INTO Exis (exis_idart, exis_idalma, exis_uni) VALUES (" +
                       std::to_string(article) + ", " + std::to_string(warehouse) + ", " +
                       sql::Number(units) + ")");
    return;
  }
  Database().Execute("UPDATE Exis SET exis_uni = ISNULL(exis_uni,0) + " + sql::Number(units) + where);
}

}  // namespace tpv::suite
