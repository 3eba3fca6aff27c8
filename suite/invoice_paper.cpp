#include "suite/invoice_paper.h"

#include <algorithm>

#include "base/mask.h"
#include "base/text.h"
#include "data/sql_text.h"
#include "fiscal/records.h"
#include "fiscal/validation_code.h"
#include "platform/printer.h"
#include "platform/pulse.h"
#include "platform/settings.h"
#include "platform/ui/front_end.h"

namespace tpv::suite {

namespace {

constexpr std::size_t kLinesAPulse = 64;

std::string Euros(const Variant& value) { return FormatNumber(value.NumberOr(0), "#,##0.00"); }

// The pieces that are not empty, joined by blanks.
std::string Joined(std::initializer_list<std::string> pieces) {
  std::string text;
  for (const std::string& piece : pieces) {
    if (!Trim(piece).empty()) text += (text.empty() ? "" : " ") + Trim(piece);
  }
  return text;
}

std::string After(const char* label, const std::string& text) {
  return Trim(text).empty() ? std::string() : label + text;
}

void DropEmpty(std::vector<std::string>& lines) {
  std::erase_if(lines, [](const std::string& line) { return line.empty(); });
}

bool IsInstalled(const Ports& ports, const std::string& printer) {
  const auto installed = ports.printers.Installed();
  return std::find(installed.begin(), installed.end(), printer) != installed.end();
}

}  // namespace

InvoicePaper::InvoicePaper(DatabaseObject& database, std::int32_t invoice_id)
    : database_(database), id_(std::to_string(invoice_id)) {
  ReadHeader(invoice_id);
  ReadSeller();
  ReadCode(invoice_id);
  report_.tables.push_back(Lines());
  report_.tables.push_back(Taxes());
  report_.tables.push_back(DueDates());
  if (!observations_.empty()) {
    report_.tables.push_back({"Observaciones", {{"", 1}}, {{{observations_}}}});
  }
}

void InvoicePaper::ReadHeader(std::int32_t invoice_id) {
  const auto header = database_.Conexion().Execute("SELECT * FROM Fav WHERE Fav_Id = " +
                                                   sql::Number(std::int64_t{invoice_id}));
  if (header->Eof()) throw ObjectError("No existe la factura que se quiere imprimir");
  const std::string series = header->Field("Fav_Serie").TextOr("");
  const std::string number = header->Field("Fav_Numero").TextOr("");
  const std::string reference = (series.empty() ? "" : series + "/") + number;
  file_name_ = "factura-" + (series.empty() ? "" : series + "-") + number;
  total_ = header->Field("Fav_Total").NumberOr(0);
  observations_ = header->Field("Fav_Obs").TextOr("");
  report_.title = "FACTURA " + reference;
  report_.right = Buyer(*header);
  report_.right.insert(report_.right.begin(),
                       "Fecha " + Format(header->Field("Fav_Fecha"), "DD/MM/YYYY"));
}

void InvoicePaper::ReadSeller() {
  const auto text = [this](const char* name) { return database_.Parametro(name).TextOr(""); };
  report_.left = {text("Par_Nombre"), After("CIF/NIF ", text("Par_Doc")),
                  Joined({text("Par_Sg"), text("Par_NombreVia")}),
                  Joined({text("Par_Cp"), text("Par_Poblacion")}),
                  After("Telefono ", text("Par_Telefono"))};
  DropEmpty(report_.left);
}

void InvoicePaper::ReadCode(std::int32_t invoice_id) {
  if (database_.Parametro("Par_Fiscal").IntOr(0) == 0) return;
  const auto record = fiscal::RecordOfInvoice(database_.Conexion(), invoice_id);
  if (!record) return;
  report_.code = ReportCode{std::string(fiscal::kAboveCode), fiscal::ValidationUrl(*record),
                            std::string(fiscal::kBelowCode)};
}

std::vector<std::string> InvoicePaper::Buyer(const Recordset& header) {
  const auto text = [&](const char* field) { return header.Field(field).TextOr(""); };
  const std::string number = text("Fav_Num") == "0" ? "" : text("Fav_Num");
  const std::string floor = Joined({After("Esc. ", text("Fav_Escalera")),
                                    After("Piso ", text("Fav_Piso")),
                                    After("Pta. ", text("Fav_Puerta"))});
  const bool has_street = !text("Fav_Nombre").empty();
  std::vector<std::string> lines = {text("Fav_CliNom"), After("CIF/NIF ", text("Fav_CliDoc"))};
  if (has_street) {
    lines.push_back(Joined({text("Fav_Sg"), text("Fav_Nombre"), number, floor}));
    lines.push_back(Joined({text("Fav_Cp"), text("Fav_Poblacion")}));
    lines.push_back(Joined(
        {Name("SELECT PROV_NOM FROM zrcomun.dbo.PROV WHERE PROV_COD = ", text("Fav_Provincia")),
         Name("SELECT PAIS_NOM FROM zrcomun.dbo.PAIS WHERE PAIS_COD = ", text("Fav_Pais"))}));
  }
  DropEmpty(lines);
  return lines;
}

std::string InvoicePaper::Name(const char* statement, const std::string& code) {
  const auto row = database_.Conexion().Execute(statement + sql::Quoted(code));
  return row->Eof() ? std::string() : row->Field(0).TextOr("");
}

std::unique_ptr<Recordset> InvoicePaper::Read(const char* select, const char* order) {
  return database_.Conexion().Execute(select + id_ + order);
}

ReportTable InvoicePaper::Lines() {
  ReportTable table;
  table.caption = "Precios e importes con el IVA incluido";
  table.columns = {{"Código", 1.3},       {"Artículo", 4},         {"Unidades", 1, true},
                   {"Precio", 1.2, true}, {"% Dto", 0.8, true}, {"Importe", 1.3, true},
                   {"% IVA", 0.8, true}};
  std::int32_t ticket = 0;
  std::size_t read = 0;
  const auto rows = Read(
      "SELECT Fal_IdCav, Fal_Ticket, Fal_Fecha, Fal_CodArt, Fal_Des, Fal_Uni, "
      "ROUND(cast(Fal_Precio + (Fal_Precio /100 * Fal_Iva) as money),2) AS Precio, Fal_Dto1, "
      "Fal_Total, Fal_Iva FROM Fal WHERE Fal_IdFav = ", " ORDER BY Fal_Id");
  for (; !rows->Eof(); rows->MoveNext()) {
    if (++read % kLinesAPulse == 0) Pulse();
    const std::int32_t of_line = rows->Field(0).IntOr(0);
    if (table.rows.empty() || of_line != ticket) {
      ReportRow& heading = table.rows.emplace_back();
      heading.strong = true;
      heading.cells.resize(table.columns.size());
      heading.cells[1] =
          "Ticket " + rows->Field(1).TextOr("") + " del " + Format(rows->Field(2), "DD/MM/YYYY HH:MM");
    }
    ticket = of_line;
    auto& cells = table.rows.emplace_back().cells;
    cells.reserve(table.columns.size());
    for (const std::size_t text : {3, 4}) cells.push_back(rows->Field(text).TextOr(""));
    for (std::size_t amount = 5; amount <= 8; ++amount) cells.push_back(Euros(rows->Field(amount)));
    cells.push_back(rows->Field(9).TextOr(""));
  }
  return table;
}

ReportTable InvoicePaper::Taxes() {
  ReportTable table;
  table.caption = "Impuestos y total";
  table.columns = {{"Base Imponible", 1, true}, {"% IVA", 1, true}, {"Cuota", 1, true},
                   {"Total", 1, true}};
  const auto rows = Read("SELECT * FROM Fai WHERE Fai_IdFav = ", " ORDER BY Fai_Iva DESC");
  for (; !rows->Eof(); rows->MoveNext()) {
    const double base = rows->Field("Fai_Base").NumberOr(0);
    const double tax = rows->Field("Fai_Cuota").NumberOr(0);
    table.rows.push_back({{Euros(Variant(base)), rows->Field("Fai_Iva").TextOr(""),
                           Euros(Variant(tax)), Euros(Variant(base + tax))}});
  }
  table.rows.push_back({{"", "", "TOTAL FACTURA", Euros(Variant(total_))}, true});
  return table;
}

ReportTable InvoicePaper::DueDates() {
  ReportTable table;
  table.caption = "Vencimientos";
  table.columns = {{"Fecha", 1}, {"Importe", 1, true}, {"Situación", 1}};
  const auto rows = Read("SELECT * FROM Vto WHERE Vto_IdFav = ", " ORDER BY Vto_Orden");
  for (; !rows->Eof(); rows->MoveNext()) {
    const bool collected = rows->Field("Vto_Cobrado").ToBool();
    table.rows.push_back({{Format(rows->Field("Vto_Fecha"), "DD/MM/YYYY"),
                           Euros(rows->Field("Vto_Importe")), collected ? "Cobrado" : "Pendiente"}});
  }
  return table;
}

std::string InvoicePaper::Print(const Ports& ports) const {
  const std::string chosen = Trim(ports.settings.Read("OKRA", "Printer", "Spool"));
  if (!chosen.empty() && IsInstalled(ports, chosen)) {
    try {
      ports.reports.Print(report_, chosen);
      return {};
    } catch (const PrintError& error) {
      // The invoice exists: a page on the screen serves until the printer does.
      std::string path = ports.reports.Show(report_, file_name_);
      ports.ui.Notify({"«" + report_.title + "» no se ha impreso. " + error.what() + ".",
                       error.detail()});
      return path;
    }
  }
  return ports.reports.Show(report_, file_name_);
}

}  // namespace tpv::suite
