#include "sale/left_sales.h"

#include "context/context.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "sale/sale_storage.h"

namespace tpv {

namespace {

SaleInProgress RequireAsSeen(Connection& connection, const SaleInProgress& seen) {
  const auto now = SaleInProgressOf(connection, seen.sale);
  if (!now) throw SaleTaken("La venta " + seen.ticket + " ya no está sin terminar: otro puesto la ha terminado o cancelado");
  if (now->till == seen.till && now->since == seen.since) return *now;
  throw SaleTaken("La venta " + seen.ticket + " ya no está aquí: " +
                  (now->Parked() ? std::string("se ha aparcado")
                                 : "la ha recuperado la caja " + std::to_string(now->till)));
}

void RequireUnpaid(Connection& connection, const SaleInProgress& sale) {
  const std::string id = sql::Number(std::int64_t{sale.sale});
  const auto paid = connection.Execute(
      "SELECT Cav_Id FROM Cav WHERE Cav_Id = " + id + " AND (Cav_Situa = " +
      std::to_string(static_cast<int>(InvoicingState::Invoiced)) +
      " OR EXISTS (SELECT * FROM Tco WHERE Tco_IdCav = Cav_Id))");
  if (paid->Eof()) return;
  throw SaleTaken("La venta " + sale.ticket + " ya tiene cobros o factura. Recupérela y cancélela: queda como venta pendiente por el resto");
}

}  // namespace

std::vector<LeftSale> ReadLeftSales(Connection& connection, std::int32_t till) {
  std::vector<LeftSale> left;
  for (SaleInProgress& sale : SalesInProgressAmong(connection, "")) {
    if (!sale.Parked() && sale.till != till) continue;
    const auto head = connection.Execute(
        "SELECT Cav_Ref, Cav_NFiscal, (SELECT Age_Nom FROM Age WHERE Age_Id = Cav_Agente) AS Agente "
        "FROM Cav WHERE Cav_Id = " + sql::Number(std::int64_t{sale.sale}));
    if (head->Eof()) continue;
    left.push_back({std::move(sale), head->Field("Cav_Ref").TextOr(""), head->Field("Agente").TextOr(""),
                    head->Field("Cav_NFiscal").TextOr(""), 0});
    left.back().total = ReadSaleTotals(connection, left.back().sale.sale).total;
  }
  return left;
}

void TakeUpSale(Context& context, const SaleInProgress& seen, std::int16_t till) {
  Connection& connection = context.Database();
  Transaction transaction(connection);
  RequireTillOpen(connection, till);
  const SaleInProgress sale = RequireAsSeen(connection, seen);
  HandSaleTo(connection, sale, till);
  const auto taken = SaleInProgressOf(connection, sale.sale);
  transaction.Commit();
  context.IdAlbaran = sale.sale;
  context.keyed_since = taken->since;
  context.Caja = till;
}

void ParkLeftSale(Context& context, const SaleInProgress& seen) {
  Connection& connection = context.Database();
  Transaction transaction(connection);
  HandSaleTo(connection, RequireAsSeen(connection, seen), SaleInProgress::kNoTill);
  transaction.Commit();
}

void GiveUpLeftSale(Context& context, const SaleInProgress& seen) {
  Connection& connection = context.Database();
  Transaction transaction(connection);
  RequireUnpaid(connection, RequireAsSeen(connection, seen));
  DeleteSale(context, seen.sale);
  transaction.Commit();
}

void ParkSale(Context& context) {
  Connection& connection = context.Database();
  Transaction transaction(connection);
  RequireOwnSale(context);
  const auto sale = SaleInProgressOf(connection, context.IdAlbaran);
  if (!sale) throw SaleTaken(kSaleElsewhere);
  HandSaleTo(connection, *sale, SaleInProgress::kNoTill);
  transaction.Commit();
}

}  // namespace tpv
