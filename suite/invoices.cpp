#include "suite/invoices.h"

#include <utility>
#include <vector>

#include "base/date_time.h"
#include "base/rounding.h"
#include "base/tax.h"
#include "base/text.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "platform/report.h"
#include "suite/invoice_paper.h"
#include "suite/number_series.h"
#include "suite/own_transaction.h"
#include "suite/store_database.h"

namespace tpv::suite {

namespace {
constexpr const char* kClass = "ZRFACTUVEN.ZRFACVENTAS";
}

Invoices::Invoices(Ports& ports) : LateBound(kClass), ports_(ports) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Text, {"SerieFactura", "FechaFactura", "CliCod", "CliNom", "CliDoc",
                          "Observaciones", "Sg", "Nombre", "Num", "Escalera", "Piso", "Puerta",
                          "Cp", "Pais", "Poblacion", "Provincia"});
  Properties(Kind::Whole, {"NumeroFactura", "IdCliente", "IdFco", "PorcentajeDto1",
                           "PorcentajeDto2", "idDir", "IdFactU", "Tipo_Emision"});
  Properties(Kind::Amount, {"TotalFactura"});
  Define("NuevaFactura", 0, 0, [this](auto) { return Create(); });
  Define("CalculoTotalesFactura", 0, 0, [this](auto) { return ComputeTotals(); });
  Define("GrabaFactura", 0, 0, [this](auto) { return Store(); });
  Define("EmisionFacturas", 2, 2, [this](std::span<Variant> arguments) {
    return Issue(arguments[0].ToInt32());
  });
}

Connection& Invoices::Database() { return DatabaseOf(*this, kClass).Conexion(); }

// 0 for an invoice that has no date or no customer.
Variant Invoices::Create() {
  if (!ParseDayFirst(Text("FechaFactura")) || Whole("IdCliente") <= 0) return Variant(0);
  OwnTransaction transaction(Database());
  const std::int32_t id = InsertHeader();
  transaction.Commit();
  return Variant(id);
}

std::int32_t Invoices::InsertHeader() {
  Connection& connection = Database();
  const std::string series = Left(Trim(Text("SerieFactura")), 5);
  const std::int32_t number =
      NextNumber(connection, "FACTURA", series,
                 "SELECT MAX(Fav_Numero) FROM Fav WHERE Fav_Serie = " + sql::Quoted(series));
  RowBuilder& row = DatabaseOf(*this, kClass).NuevaSentencia();
  row.Tabla("Fav");
  row.BeginTrans(false);
  const auto text = [&](const char* column, const char* property, std::size_t most) {
    row.Add(column, ValueKind::Text, Variant(Left(Text(property), most)));
  };
  row.Add("Fav_Serie", ValueKind::Text, Variant(series));
  row.Add("Fav_Numero", ValueKind::Whole, Variant(number));
  row.Add("Fav_Fecha", ValueKind::Date, Get("FechaFactura"));
  row.Add("Fav_IdCli", ValueKind::Whole, Get("IdCliente"));
  text("Fav_CliCod", "CliCod", 10);
  text("Fav_CliNom", "CliNom", 150);
  text("Fav_CliDoc", "CliDoc", 20);
  row.Add("Fav_IdFco", ValueKind::Whole, Get("IdFco"));
  text("Fav_Obs", "Observaciones", 255);
  text("Fav_Sg", "Sg", 2);
  text("Fav_Nombre", "Nombre", 50);
  text("Fav_Num", "Num", 10);
  text("Fav_Escalera", "Escalera", 2);
  text("Fav_Piso", "Piso", 2);
  text("Fav_Puerta", "Puerta", 2);
  text("Fav_Cp", "Cp", 5);
  text("Fav_Pais", "Pais", 3);
  text("Fav_Poblacion", "Poblacion", 50);
  text("Fav_Provincia", "Provincia", 3);
  std::string error;
  if (!row.Insert(error)) throw ObjectError("No se pudo grabar la factura: " + error);
  Set("NumeroFactura", Variant(number));
  return connection.Execute("SELECT MAX(Fav_Id) FROM Fav")->Field(0).ToInt32();
}

Variant Invoices::ComputeTotals() {
  OwnTransaction transaction(Database());
  const std::string id = std::to_string(Whole("IdFactU"));
  GatherLines(id);
  Set("TotalFactura", Variant(StoreRates(id)));
  transaction.Commit();
  return {};
}

// Each line with tax to the cent, as the customer paid it.
void Invoices::GatherLines(const std::string& invoice) {
  Database().Execute("DELETE FROM Fal WHERE Fal_IdFav = " + invoice);
  Database().Execute(
      "INSERT INTO Fal (Fal_IdFav, Fal_IdCav, Fal_Ticket, Fal_Fecha, Fal_CodArt, Fal_Des, Fal_Uni, "
      "Fal_Precio, Fal_Dto1, Fal_Importe, Fal_Iva, Fal_Total) SELECT " + invoice + ", Cav_Id, " +
      std::string(kTicketReference) + ", Cav_Fecha, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, "
      "Lav_DTo1, Lav_Importe, Tiva_iva, "
      "ROUND(cast(Lav_Importe + (Lav_Importe /100 * Tiva_iva) as money),2) "
      "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva "
      "WHERE Cav_IdFactura = " + invoice + " ORDER BY Cav_Fecha, Cav_Id, Lav_Id");
}

// Base and tax of a rate come from its total, once: rounded line by line they would
// drift apart from each other over a month. Returns the invoice's total.
double Invoices::StoreRates(const std::string& invoice) {
  Database().Execute("DELETE FROM Fai WHERE Fai_IdFav = " + invoice);
  std::vector<std::pair<double, double>> totals;
  {
    const auto rates = Database().Execute("SELECT Fal_Iva, SUM(Fal_Total) FROM Fal WHERE Fal_IdFav = " +
                                          invoice + " GROUP BY Fal_Iva");
    for (; !rates->Eof(); rates->MoveNext()) {
      totals.emplace_back(rates->Field(0).NumberOr(0), rates->Field(1).NumberOr(0));
    }
  }
  double all = 0;
  for (const auto& [rate, total] : totals) {
    all += total;
    const double base = BaseOf(total, rate);
    Database().Execute("INSERT INTO Fai (Fai_IdFav, Fai_Iva, Fai_Base, Fai_Cuota) VALUES (" + invoice +
                       ", " + sql::Number(rate) + ", " + sql::Number(base) + ", " +
                       sql::Number(RoundHalfAway(total - base, 2)) + ")");
  }
  return RoundHalfAway(all, 2);
}

Variant Invoices::Store() {
  OwnTransaction transaction(Database());
  const std::string id = std::to_string(Whole("IdFactU"));
  const std::string of_invoice = " FROM Fai WHERE Fai_IdFav = " + id + ")";
  Database().Execute("UPDATE Fav SET Fav_Base = (SELECT SUM(Fai_Base)" + of_invoice +
                     ", Fav_Impuestos = (SELECT SUM(Fai_Cuota)" + of_invoice + ", Fav_Total = " +
                     sql::Number(Amount("TotalFactura")) + " WHERE Fav_Id = " + id);
  transaction.Commit();
  return Variant(true);
}

Variant Invoices::Issue(std::int32_t copies) {
  InvoicePaper paper(DatabaseOf(*this, kClass), Whole("IdFactU"));
  std::string file;
  for (std::int32_t copy = 0; copy < copies; ++copy) file = paper.Print(ports_);
  return Variant(file);
}

}  // namespace tpv::suite
