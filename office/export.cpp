#include "office/export.h"

#include <vector>

#include "data/codes.h"
#include "data/statements.h"
#include "office/fields.h"
#include "office/shop_parameters.h"
#include "platform/database.h"
#include "platform/pulse.h"
#include "platform/table_file.h"

namespace tpv::office {

namespace {

struct Column {
  std::string heading;
  std::string value;  // as the statement selects it
};

struct Statement {
  std::vector<Column> columns;
  std::string rest;  // from FROM on

  std::string Text() const {
    std::string text = "SELECT ";
    for (const Column& column : columns) {
      text += (&column == columns.data() ? "" : ", ") + column.value + " AS " + column.heading;
    }
    return text + rest;
  }
};

Statement OfFields(std::span<const Field> fields, std::string rest) {
  Statement statement{{}, std::move(rest)};
  for (const Field& field : fields) statement.columns.push_back({field.name, field.column});
  return statement;
}

Statement Articles(Connection& connection) {
  const std::int32_t warehouse = ReadShopParameters(connection).warehouse.value_or(0);
  Statement statement = OfFields(
      ArticleFields(), " FROM ART LEFT JOIN Exis ON (exis_idart = art_id AND exis_idalma = " +
                           std::to_string(warehouse) + ") ORDER BY art_id");
  statement.columns.push_back({kStock, "exis_uni"});
  return statement;
}

Statement Customers() {
  return OfFields(CustomerFields(),
                  " FROM Cli LEFT JOIN Dir ON DIR_ID = (SELECT MIN(CLIDIR_DIR) FROM CliDir "
                  "WHERE CLIDIR_CLI = CLI_ID) ORDER BY CLI_COD");
}

Statement Stock() {
  return {{{"codigo", "ART_Cod"}, {kWarehouse, "exis_idalma"}, {kStock, "exis_uni"}},
          " FROM Exis INNER JOIN ART ON art_id = exis_idart ORDER BY exis_idalma, art_id"};
}

// " AND column between …", nothing without bounds.
std::string Between(const char* column, const ExportOrder& order) {
  if (!order.from && !order.to) return {};
  const DateTime first = order.from.value_or(DateTime{1900, 1, 1});
  const DateTime last = order.to.value_or(DateTime{2999, 12, 31});
  return std::string(" AND ") + column + " " + BetweenDays(ToDayFirst(first), ToDayFirst(last));
}

const std::string kTicket(kTicketReference);
const std::string kSeller = "(SELECT Age_NOM FROM Age WHERE Age_ID = ";
const std::string kInvoice(kInvoiceReference);

Statement Tickets(const ExportOrder& order) {
  return {
      {{"ticket", kTicket},
       {"fecha", "Cav_Fecha"},
       {"caja", "Cav_Caja"},
       {"vendedor", kSeller + "Cav_Agente)"},
       {"cliente", "(SELECT CLI_COD FROM Cli WHERE CLI_ID = Cav_IdCli)"},
       {"nombre", "Cav_NFiscal"},
       {"nif", "Cav_CliDoc"},
       {"base", "(SELECT SUM(Lav_Importe) FROM Lav WHERE Lav_IdCav = Cav_Id)"},
       {"total", "(SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = Cav_Id)"},
       {"cobrado", std::string(kAmountCollected)},
       {"terminado", "Cav_Cobrado"},
       {"factura", kInvoice}},
      " FROM Cav LEFT JOIN Fav ON Fav_Id = Cav_IdFactura WHERE Cav_Ticket = 1" +
          Between("Cav_Fecha", order) + " ORDER BY Cav_Id"};
}

Statement Lines(const ExportOrder& order) {
  return {{{"ticket", kTicket},
           {"fecha", "Cav_Fecha"},
           {"codigo", "Lav_CodArt"},
           {"descripcion", "Lav_Des"},
           {"unidades", "Lav_Uni"},
           {"precio", "Lav_precio"},
           {"descuento", "Lav_DTo1"},
           {"importe", "Lav_Importe"},
           {"iva", "(SELECT Tiva_iva FROM zrcomun.dbo.tivas WHERE Tiva_Id = Lav_Tiva)"},
           {"importe_con_iva", "dbo.FncImporteConIva(Lav_Id)"}},
          " FROM Lav INNER JOIN Cav ON Cav_Id = Lav_IdCav WHERE Cav_Ticket = 1" +
              Between("Cav_Fecha", order) + " ORDER BY Lav_Id"};
}

std::string Number(JournalEvent event) { return std::to_string(static_cast<int>(event)); }

// A row for each ticket that a collection paid, and for each payment out.
Statement Payments(const ExportOrder& order) {
  return {
      {{"apunte", "DiaCaj_Id"},
       {"fecha", "DiaCaj_Fecha"},
       {"caja", "DiaCaj_Caja"},
       {"tipo", "DiaCaj_Tipo"},
       {"modo", "DiaCaj_Modo"},
       {"vendedor", kSeller + "DiaCaj_IdAge)"},
       {"entregado", "DiaCaj_Entrega"},
       {"tarjeta", "DiaCaj_Tarjeta"},
       {"devuelto", "DiaCaj_Devolucion"},
       {"descuento", "DiaCaj_Descuento"},
       {"cobrado", "DiaCaj_Cobrado"},
       {"ticket", kTicket},
       {"importe_ticket", "Tco_Importe"},
       {"observaciones", "DiaCaj_Obs"},
       {"cierre", "DiaCaj_IdCierre"}},
      " FROM DiaCaj LEFT JOIN Tco ON Tco_IdDiaCaj = DiaCaj_Id LEFT JOIN Cav ON Cav_Id = Tco_IdCav "
      "WHERE DiaCaj_Tipo IN (" +
          Number(JournalEvent::TicketCollection) + ", " + Number(JournalEvent::PendingCollection) +
          ", " + Number(JournalEvent::PaymentOut) + ")" + Between("DiaCaj_Fecha", order) +
          " ORDER BY DiaCaj_Id, Tco_IdCav"};
}

Statement Invoices(const ExportOrder& order) {
  return {{{"factura", kInvoice},
           {"fecha", "Fav_Fecha"},
           {"cliente", "Fav_CliCod"},
           {"nombre", "Fav_CliNom"},
           {"nif", "Fav_CliDoc"},
           {"base", "Fav_Base"},
           {"impuestos", "Fav_Impuestos"},
           {"total", "Fav_Total"}},
          " FROM Fav WHERE 1 = 1" + Between("Fav_Fecha", order) + " ORDER BY Fav_Id"};
}

Statement Closures(const ExportOrder& order) {
  return {{{"cierre", "DiaCaj_Id"},
           {"fecha", "DiaCaj_Fecha"},
           {"caja", "DiaCaj_Caja"},
           {"vendedor", kSeller + "DiaCaj_IdAge)"},
           {"saldo_inicial", "DiaCaj_SaldoIni"},
           {"metalico", "DiaCaj_CobMet"},
           {"tarjeta", "DiaCaj_CobTar"},
           {"pagos", "DiaCaj_Pagos"},
           {"retirado", "DiaCaj_Ret"},
           {"saldo_final", "DiaCaj_SaldoIni + DiaCaj_CobMet - DiaCaj_Pagos - DiaCaj_Ret"}},
          " FROM DiaCaj WHERE DiaCaj_Tipo = " + Number(JournalEvent::Closure) +
              Between("DiaCaj_Fecha", order) + " ORDER BY DiaCaj_Id"};
}

Statement StatementOf(Connection& connection, const ExportOrder& order) {
  switch (order.kind) {
    case ExportKind::Articles:
      return Articles(connection);
    case ExportKind::Customers:
      return Customers();
    case ExportKind::Stock:
      return Stock();
    case ExportKind::Tickets:
      return Tickets(order);
    case ExportKind::Lines:
      return Lines(order);
    case ExportKind::Payments:
      return Payments(order);
    case ExportKind::Invoices:
      return Invoices(order);
    default:
      return Closures(order);
  }
}

std::string CellText(const Variant& value) {
  if (value.IsBool()) return value.ToBool() ? "1" : "0";
  return value.IsNumber() ? FileNumber(value.ToDouble()) : value.ToText();
}

}  // namespace

bool IsDated(ExportKind kind) {
  return kind != ExportKind::Articles && kind != ExportKind::Customers && kind != ExportKind::Stock;
}

long ExportTable(Connection& connection, TableFiles& files, const ExportOrder& order) {
  const auto file = files.Create(order.path);
  const Statement statement = StatementOf(connection, order);
  std::vector<std::string> cells;
  for (const Column& column : statement.columns) cells.push_back(column.heading);
  file->Write(cells);
  long rows = 0;
  const auto row = connection.Execute(statement.Text());
  for (; !row->Eof(); row->MoveNext()) {
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = CellText(row->Field(i));
    file->Write(cells);
    ++rows;
    Pulse();
  }
  file->Finish();
  return rows;
}

}  // namespace tpv::office
