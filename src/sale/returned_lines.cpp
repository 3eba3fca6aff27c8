// Taking lines back from the ticket that sold them, on the returns screen.
#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "data/archived.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "sale/returns_screen.h"
#include "sale/sale_storage.h"

namespace tpv {

namespace {

// 0 when there is no such ticket.
std::int32_t TicketByNumber(Connection& connection, const std::string& series,
                            std::int32_t number) {
  const auto row = connection.Execute(
      "SELECT TOP 1 Cav_Id FROM Cav WHERE Cav_Ticket = 1 AND Cav_Numero = " +
      sql::Number(std::int64_t{number}) +
      (series.empty() ? std::string(" AND (Cav_Serie = '' OR Cav_Serie IS NULL)")
                      : " AND Cav_Serie = " + sql::Quoted(series)) +
      " ORDER BY Cav_Id DESC");
  return row->Eof() ? 0 : row->Field(0).ToInt32();
}

}  // namespace

void FrmTpvDevoluciones::FindSale() {
  const std::string series = Trim(Text1[9].text);
  const auto number = ParseInt32(Text1[11].text);
  if (!number) return Refuse("No ha informado del número de la venta", &Text1[11]);
  const std::string reference = (series.empty() ? "" : series + "/") + std::to_string(*number);
  const std::int32_t sale = TicketByNumber(Database(), series, *number);
  if (sale == 0) {
    const std::string archive = ArchiveOfTicket(Database(), series, *number);
    return Refuse(archive.empty() ? "No existe la venta " + reference
                                  : "La venta " + reference + " no está en la tienda: " + archive,
                  &Text1[11]);
  }
  if (sale == context().IdAlbaran) {
    return Refuse("La venta " + reference + " es la devolución en curso", &Text1[11]);
  }
  ShowLines(sale, false);
  listed_sale_ = sale;
  if (ListView1.items.empty()) {
    ShowLinesAndTotals();
    return Refuse("La venta " + reference + " no tiene líneas", &Text1[11]);
  }
  SetFocus(ListView1);
}

// All of them or none.
void FrmTpvDevoluciones::TakeCheckedLines() {
  if (!sale_in_progress_) return Refuse("No ha iniciado ninguna devolución", &cmdNueva);
  if (listed_sale_ == 0) return Refuse("No ha buscado la venta que se devuelve", &Text1[9]);
  const auto& items = ListView1.items;
  if (std::none_of(items.begin(), items.end(), [](const auto& item) { return item.checked; })) {
    return Refuse("No ha marcado ninguna línea de la venta", &ListView1);
  }
  try {
    Transaction transaction(Database());
    for (const ui::ListItem& item : items) {
      if (item.checked) StoreReturned(item.tag);
    }
    transaction.Commit();
    if (std::find(originals_.begin(), originals_.end(), listed_sale_) == originals_.end()) {
      originals_.push_back(listed_sale_);
    }
  } catch (const std::exception& error) {
    return Refuse("No se ha podido grabar la devolución. " + std::string(kLineBreak) + error.what(),
                  nullptr, ui::Icon::Critical);
  }
  ShowLinesAndTotals();
}

void FrmTpvDevoluciones::StoreReturned(std::int32_t line_id) {
  SaleLine line;
  {
    const auto sold = Database().Execute("SELECT * FROM Lav WHERE Lav_Id = " +
                                         sql::Number(std::int64_t{line_id}));
    if (sold->Eof()) throw DatabaseError("Una línea de la venta ya no existe");
    line.article_id = sold->Field("Lav_Idart").IntOr(0);
    line.article_code = sold->Field("Lav_CodArt").TextOr("");
    line.tax_id = sold->Field("Lav_Tiva").IntOr(0);
    line.description = sold->Field("Lav_Des").TextOr("");
    line.units = -sold->Field("Lav_Uni").NumberOr(0);
    line.net_price = sold->Field("Lav_precio").NumberOr(0);
    line.warehouse = Warehouse();
    line.discount = ToSpanish(sold->Field("Lav_DTo1").NumberOr(0));
  }
  StoreLine(context(), line);
}

}  // namespace tpv
