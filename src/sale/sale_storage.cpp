#include "sale/sale_storage.h"

#include <optional>
#include <vector>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "context/context.h"
#include "data/codes.h"
#include "data/sales_in_progress.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "data/till_clock.h"
#include "fiscal/issuing.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "platform/objects.h"

namespace tpv {

namespace {

std::shared_ptr<Object> DeliveryNotes(Context& context) {
  auto notes = context.ports.objects.Create("ZRALBARANES.ZRAlbVentas");
  notes->Put("MyBd", Variant(Variant::ObjectRef(context.MyBd)));
  return notes;
}

Variant TextOf(const CustomerRecord& customer, std::string_view field) {
  return Variant(customer[field].TextOr(""));
}

void PutHeader(Object& notes, Context& context, const CustomerRecord& customer,
               const std::string& till) {
  notes.Put("serie", Variant(context.Parameter("Par_SerTic").TextOr("")));
  notes.Put("Numero", Variant(0));
  notes.Put("idCli", customer["Cli_Id"]);
  notes.Put("IdUsu", Variant(context.MyBd->IdUsuario()));
  notes.Put("valorado", Variant(0));
  notes.Put("Ref", Variant(till));
  notes.Put("IdFco", customer["Cli_Fco"]);
  notes.Put("IdTiva", customer["Cli_Reg"]);
  notes.Put("Dto1", Variant(0));
  notes.Put("Dto2", Variant(0));
  notes.Put("Situa", Variant(static_cast<int>(InvoicingState::Pending)));
  notes.Put("IdFactura", Variant(0));
  notes.Put("Observa", Variant(""));
  notes.Put("Transp", Variant(""));
  notes.Put("NFiscal", TextOf(customer, "Cli_Nom"));
  notes.Put("NCom", TextOf(customer, "Cli_Nom"));
  notes.Put("Sg", TextOf(customer, "Dir_Sg"));
  notes.Put("Nombre", TextOf(customer, "DIR_NOMBRE"));
  notes.Put("Num", Variant(customer["DIR_numero"].IntOr(0)));
  notes.Put("Escalera", TextOf(customer, "Dir_Escalera"));
  notes.Put("Piso", TextOf(customer, "Dir_Piso"));
  notes.Put("Puerta", TextOf(customer, "Dir_Puerta"));
  notes.Put("Cp", TextOf(customer, "Dir_Cp"));
  notes.Put("Pais", TextOf(customer, "DIR_PAIS"));
  notes.Put("Provincia", TextOf(customer, "DIR_Provincia"));
  notes.Put("Poblacion", TextOf(customer, "DIR_POBLACION"));
  notes.Put("IdAgente", Variant(context.IdAgente));
  notes.Put("ComisionAgente", Variant(0));
  notes.Put("SProvincia", Variant(""));
  notes.Put("SPais", Variant(""));
  notes.Put("SCliDoc", TextOf(customer, "Cli_doc"));
}

void PutLine(Object& notes, const SaleLine& line) {
  notes.Put("IdAlmacen", Variant(line.warehouse));
  notes.Put("idArt", Variant(line.article_id));
  notes.Put("Codart", Variant(line.article_code));
  notes.Put("tiva", Variant(line.tax_id));
  notes.Put("Des", Variant(line.description));
  notes.Put("Uni", Variant(line.units));
  notes.Put("Precio", Variant(line.net_price));
  notes.Put("Dto1Linea", Variant(NumberOrZero(line.discount)));
  notes.Put("Dto2Linea", Variant(0));
  notes.Put("Importe", Variant(line.Amount()));
  for (const char* empty : {"Ampliades", "Sped", "Sref"}) notes.Put(empty, Variant(""));
  notes.Put("ComisionAgente", Variant(0));
  notes.Put("Bultos", Variant(0));
  notes.Put("Lote", Variant(""));
  for (const char* zero : {"Largo", "Ancho", "Espesor", "Externo", "Interno", "CantidadK"}) {
    notes.Put(zero, Variant(0));
  }
  notes.Put("formula", Variant(1));
  notes.Put("IdExis", Variant(0));
  notes.Put("IdAlmacen", Variant(line.warehouse));
  notes.Put("SerieArticulo", Variant(""));
  notes.Put("IdDoc", Variant(0));
}

}  // namespace

void DeleteSale(Context& context, std::int32_t sale_id) {
  fiscal::RecordDeletion(fiscal::DeskOf(context), sale_id);
  DeleteLines(context, LinesOf(context, sale_id));
  context.Database().Execute("DELETE FROM Cav WHERE Cav_Id = " +
                             sql::Number(std::int64_t{sale_id}));
  UnregisterSale(context.Database(), sale_id);
}

std::vector<std::int32_t> LinesOf(Context& context, std::int32_t sale_id) {
  std::vector<std::int32_t> lines;
  const auto rows = context.Database().Execute("SELECT * FROM Lav WHERE Lav_IdCav = " +
                                               sql::Number(std::int64_t{sale_id}));
  for (; !rows->Eof(); rows->MoveNext()) lines.push_back(rows->Field("Lav_Id").ToInt32());
  return lines;
}

void DeleteLines(Context& context, const std::vector<std::int32_t>& lines) {
  const auto notes = DeliveryNotes(context);
  for (const std::int32_t line : lines) notes->Invoke("borraLineaAlbaran", line, false);
}

void CreateSaleHeader(Context& context, const CustomerRecord& customer, const std::string& till,
                      const std::string& date) {
  // Header, number, mark and register are one step: no ticket of nobody's till is left
  // behind when the second statement fails.
  Transaction transaction(context.Database());
  if (!TillIsOpen(context.Database(), till)) throw TillRefusal(kTillClosed);
  const auto notes = DeliveryNotes(context);
  PutHeader(*notes, context, customer, till);
  const TillClock clock(context.Database(), Int32OrZero(till));
  const std::string moment = date.empty() ? clock.Moment() : date;
  const std::int32_t sale = notes->Invoke("GrabaCabeceraAlbaran", 0, "", moment, false).ToInt32();
  context.Database().Execute("UPDATE Cav SET Cav_Ticket = 1, Cav_Caja = " +
                             sql::WholeNumber(till) +
                             " WHERE Cav_Id = " + sql::Number(std::int64_t{sale}));
  RegisterSale(context.Database(), sale, till, context.IdAgente);
  const auto registered = SaleInProgressOf(context.Database(), sale);
  transaction.Commit();
  context.IdAlbaran = sale;
  context.keyed_since = registered->since;
}

double NetPrice(double price_with_tax, double tax_rate, int decimals) {
  const double divisor = RoundHalfAway(1 + tax_rate / 100, decimals);
  return RoundHalfAway(price_with_tax / divisor, decimals);
}

double SaleLine::Amount() const {
  const double amount = RoundHalfAway(units * net_price, 2);
  if (discount.empty()) return amount;
  const double off = RoundHalfAway(units * net_price / 100 * NumberOrZero(discount), 2);
  return RoundHalfAway(amount - off, 2);
}

namespace {

// Changes a line of the context's sale, which nobody else has touched.
template <typename Change>
void ChangeLine(Context& context, Change change) {
  std::optional<Transaction> own;
  if (!context.Database().InTransaction()) own.emplace(context.Database());
  RequireOwnSale(context);
  change(*DeliveryNotes(context));
  if (own) own->Commit();
}

}  // namespace

void StoreLine(Context& context, const SaleLine& line) {
  ChangeLine(context, [&](Object& notes) {
    PutLine(notes, line);
    notes.Invoke("GrabaLineaAlbaran", context.IdAlbaran, line.id, "", false);
  });
}

void DeleteLine(Context& context, std::int32_t line_id) {
  ChangeLine(context, [&](Object& notes) { notes.Invoke("borraLineaAlbaran", line_id); });
}

void CancelSale(Context& context, std::int32_t sale_id) {
  Transaction transaction(context.Database());
  const auto paid = context.Database().Execute("SELECT TOP 1 Tco_IdDiaCaj FROM Tco WHERE Tco_IdCav = " +
                                               sql::Number(std::int64_t{sale_id}));
  if (!paid->Eof()) throw SaleTaken("La venta tiene cobros: no se puede cancelar");
  DeleteSale(context, sale_id);
  transaction.Commit();
}

namespace {

// Whether the register says that somebody else keys the context's sale, or nobody.
bool IsElsewhere(Context& context, const Variant& since) {
  return context.keyed_since && !since.IsNull() && since.ToDate() != *context.keyed_since;
}

// Whether the context's sale is there; throws SaleTaken when another till did
// something with it.
bool IsThere(Context& context) {
  const auto sale = context.Database().Execute(
      "SELECT Cav_Situa, " + std::string(kAmountCollected) +
      " AS Cobrado, Vec_Inicio FROM Cav LEFT JOIN VentasEnCurso ON Vec_IdCav = Cav_Id WHERE Cav_Id = " +
      sql::Number(std::int64_t{context.IdAlbaran}));
  if (sale->Eof()) return false;
  if (IsElsewhere(context, sale->Field("Vec_Inicio"))) throw SaleTaken(kSaleElsewhere);
  const auto invoiced = static_cast<std::int32_t>(InvoicingState::Invoiced);
  if (sale->Field("Cav_Situa").IntOr(0) == invoiced) throw SaleTaken(kSaleInvoiced);
  const double collected = sale->Field("Cobrado").NumberOr(0);
  if (collected == 0) return true;
  throw SaleTaken("Otra caja ya ha cobrado " + FormatNumber(collected, "0.00") +
                  " de esta venta. Al cancelarla queda como venta pendiente por el resto");
}

}  // namespace

void RequireOwnSale(Context& context) {
  if (!IsThere(context)) throw SaleTaken("La venta ya no existe: se ha eliminado desde otra caja");
}

void LeaveSalePending(Context& context, const std::vector<std::int32_t>& originals) {
  Transaction transaction(context.Database());
  const auto registered = SaleInProgressOf(context.Database(), context.IdAlbaran);
  const bool elsewhere = registered && IsElsewhere(context, Variant(registered->since));
  if (elsewhere) return;
  UnregisterSale(context.Database(), context.IdAlbaran);
  fiscal::RecordTicket(fiscal::DeskOf(context), context.IdAlbaran, originals);
  transaction.Commit();
}

void GiveUpSale(Context& context) {
  Transaction transaction(context.Database());
  if (IsThere(context)) {
    DeleteSale(context, context.IdAlbaran);
  } else {
    UnregisterSale(context.Database(), context.IdAlbaran);
  }
  transaction.Commit();
}

}  // namespace tpv
