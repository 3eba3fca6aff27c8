#include "suite/treasury.h"

#include "data/sql_text.h"
#include "suite/due_dates.h"
#include "suite/own_transaction.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {

constexpr const char* kClass = "ZRTESORERIA.ZRTESORE";

std::vector<PaymentLine> Read(Connection& connection, const std::string& statement) {
  std::vector<PaymentLine> lines;
  for (const auto rows = connection.Execute(statement); !rows->Eof(); rows->MoveNext()) {
    lines.push_back({rows->Field(0).IntOr(0), rows->Field(1).NumberOr(0), rows->Field(2).IntOr(0)});
  }
  return lines;
}

// The method's terms; without any, its lines in equal parts, due at once.
std::vector<PaymentLine> LinesOf(Connection& connection, std::int32_t method) {
  const std::string id = sql::Number(std::int64_t{method});
  auto lines = Read(connection, "SELECT plazo_dias, plazo_por, plazo_modo FROM Plazos WHERE "
                                "plazo_idfco = " + id + " ORDER BY plazo_dias");
  if (!lines.empty()) return lines;
  return Read(connection, "SELECT 0 AS dias, 0 AS parte, Fcol_Mod FROM Fcol WHERE Fcol_id = " + id);
}

}  // namespace

Treasury::Treasury() : LateBound(kClass) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Flag, {"bCobrado", "bCartera"});
  Properties(Kind::Whole, {"IdFactura", "NumeroFactura", "IdFormaCobro", "IdCliente", "DiasPago1",
                           "DiasPago2", "MesSinPago"});
  Properties(Kind::Text, {"SerieFactura", "FechaFactura", "CtaCobroCliente", "CtaBancoAsignado"});
  Properties(Kind::Amount, {"TotalFactura"});
  Define("Calculo_Vtos_Factura", 0, 0, [this](auto) { return StoreDueDates(); });
}

// Computed again, they take the place of those of before.
Variant Treasury::StoreDueDates() {
  Connection& connection = DatabaseOf(*this, kClass).Conexion();
  OwnTransaction transaction(connection);
  connection.Execute("DELETE FROM Vto WHERE Vto_IdFav = " + std::to_string(Whole("IdFactura")));
  int number = 0;
  for (const DueDate& due :
       DueDates(Get("FechaFactura").ToDate(), Amount("TotalFactura"),
                LinesOf(connection, Whole("IdFormaCobro")),
                {Whole("DiasPago1"), Whole("DiasPago2"), Whole("MesSinPago")})) {
    Insert(due, ++number);
  }
  transaction.Commit();
  return {};
}

void Treasury::Insert(const DueDate& due, int number) {
  RowBuilder& row = DatabaseOf(*this, kClass).NuevaSentencia();
  row.Tabla("Vto");
  row.BeginTrans(false);
  row.Add("Vto_IdFav", ValueKind::Whole, Get("IdFactura"));
  row.Add("Vto_Orden", ValueKind::Whole, Variant(number));
  row.Add("Vto_Fecha", ValueKind::Date, Variant(ToDayFirst(due.date)));
  row.Add("Vto_Importe", ValueKind::Amount, Variant(due.amount));
  row.Add("Vto_Modo", ValueKind::Whole, Variant(due.mode));
  row.Add("Vto_Cobrado", ValueKind::Flag, Get("bCobrado"));
  row.Add("Vto_Cartera", ValueKind::Flag, Get("bCartera"));
  row.Add("Vto_IdCli", ValueKind::Whole, Get("IdCliente"));
  row.Add("Vto_Cta", ValueKind::Text, Get("CtaCobroCliente"));
  row.Add("Vto_Banco", ValueKind::Text, Get("CtaBancoAsignado"));
  std::string error;
  if (!row.Insert(error)) throw ObjectError("No se pudo grabar el vencimiento: " + error);
}

}  // namespace tpv::suite
