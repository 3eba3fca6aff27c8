#include "reports/deleted_tickets.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "context/context.h"
#include "data/insert_row.h"
#include "data/statements.h"

namespace tpv {

namespace {

// "2 Pan a 1,1; 1 Leche a 0,9": units, description and net price.
std::string LinesText(Connection& connection, const std::string& id) {
  const auto lines = connection.Execute(
      "SELECT Lav_Uni, Lav_Des, Lav_precio FROM Lav WHERE Lav_IdCav = " + id + " ORDER BY Lav_Id");
  std::string text;
  for (; !lines->Eof(); lines->MoveNext()) {
    if (!text.empty()) text += "; ";
    text += ToSpanish(lines->Field(0).NumberOr(0)) + " " + lines->Field(1).TextOr("") + " a " +
            ToSpanish(lines->Field(2).NumberOr(0));
  }
  return text;
}

std::string InvoiceOf(Connection& connection, const std::string& id) {
  const auto invoice = connection.Execute(
      "SELECT Fav_Serie, Fav_Numero FROM Fav WHERE Fav_Id = (SELECT Cav_IdFactura FROM Cav WHERE "
      "Cav_Id = " +
      id + ")");
  if (invoice->Eof()) return {};
  return invoice->Field(0).TextOr("") + "/" + invoice->Field(1).ToText();
}

}  // namespace

std::vector<std::string> BooksRelyingOn(Connection& connection, std::int32_t sale_id) {
  const std::string id = sql::Number(std::int64_t{sale_id});
  std::vector<std::string> relying;
  const std::string invoice = InvoiceOf(connection, id);
  if (!invoice.empty()) {
    relying.push_back("La factura " + invoice + " seguirá con el importe de esta venta.");
  }
  const auto closures = connection.Execute(
      "SELECT DiaCaj_Id, DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Id IN (SELECT DiaCaj_IdCierre FROM "
      "DiaCaj "
      "INNER JOIN Tco ON Tco_IdDiaCaj = DiaCaj_Id WHERE Tco_IdCav = " +
      id + " AND DiaCaj_IdCierre <> 0) ORDER BY DiaCaj_Id");
  for (; !closures->Eof(); closures->MoveNext()) {
    relying.push_back("El cierre nº " + closures->Field(0).ToText() + " del " +
                      Format(closures->Field(1), "DD/MM/YYYY HH:MM") +
                      " seguirá con un cobro que ya no estará.");
  }
  return relying;
}

void TraceDeletion(Context& context, std::int32_t sale_id) {
  Connection& connection = context.Database();
  const std::string id = sql::Number(std::int64_t{sale_id});
  const auto header = connection.Execute(
      "SELECT " + std::string(kTicketReference) +
      " AS Ticket, Cav_Fecha, Cav_Caja, Cav_Agente, Cav_NFiscal FROM Cav WHERE Cav_Id = " + id);
  if (header->Eof()) return;
  const Variant date = header->Field("Cav_Fecha");
  sql::InsertRow(
      connection, "Anulados",
      "Anu_IdCav, Anu_Ticket, Anu_Fecha, Anu_Caja, Anu_Agente, Anu_Cliente, Anu_Importe, "
      "Anu_Lineas, Anu_PorCaja, Anu_PorUsuario, Anu_PorAgente",
      {sale_id, header->Field("Ticket").TextOr(""),
       date.IsNull() ? sql::Null() : sql::Value(date.ToDate()), header->Field("Cav_Caja").IntOr(0),
       header->Field("Cav_Agente").IntOr(0), header->Field("Cav_NFiscal").TextOr(""),
       ReadSaleTotals(connection, sale_id).total, LinesText(connection, id),
       context.Parameter("Par_NumCaja").IntOr(0), context.MyBd->IdUsuario(), context.IdAgente});
}

std::string DeletedTickets(const std::string& days) {
  return "SELECT Anu_Cuando, Anu_Ticket, Anu_PorCaja, Anu_PorUsuario, "
         "(SELECT Age_Nom FROM Age WHERE Age_Id = Anu_PorAgente) as Agente, Anu_Fecha, Anu_Caja, "
         "Anu_Importe, Anu_Lineas FROM Anulados WHERE Anu_Cuando " +
         days + "ORDER BY Anu_Cuando";
}

}  // namespace tpv
