#include "cash/closing_period.h"

#include "context/context.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "platform/database.h"

namespace tpv {

std::vector<OpenTill> OpenTills(Context& context, bool& any_entry) {
  std::vector<OpenTill> open;
  Connection& connection = context.Database();
  const auto tills = connection.Execute("SELECT DISTINCT DIACAJ_CAJA FROM DIACAJ ORDER BY DIACAJ_CAJA");
  any_entry = !tills->Eof();
  for (; !tills->Eof(); tills->MoveNext()) {
    const std::int32_t till = tills->Field(0).IntOr(0);
    const auto newest =
        connection.Execute("SELECT TOP 1  * FROM DIACAJ WHERE DIACAJ_CAJA = " +
                           sql::Number(std::int64_t{till}) + " ORDER BY DIACAJ_FECHA DESC");
    constexpr int kClosure = static_cast<int>(JournalEvent::Closure);
    if (newest->Eof() || newest->Field("DiaCaj_Tipo").IntOr(kClosure) == kClosure) continue;
    open.push_back({till, newest->Field("DiaCaj_Fecha").ToDate()});
  }
  return open;
}

std::optional<Opening> LastOpening(Context& context, std::int32_t till) {
  const auto row = context.Database().Execute(
      "SELECT TOP 1 *, (SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) as Vendedor "
      "FROM DiaCaj WHERE DiaCaj_Caja = " + sql::Number(std::int64_t{till}) +
      " AND DiaCaj_Tipo = 0 ORDER BY DiaCaj_Fecha DESC");
  if (row->Eof()) return std::nullopt;
  return Opening{row->Field("DiaCaj_Fecha").ToDate(), row->Field("Vendedor").TextOr(""),
                 row->Field("DiaCaj_SaldoIni").NumberOr(0)};
}

ClosingPeriod::ClosingPeriod(Context& context, std::int32_t till, const DateTime& opened)
    : context_(context), till_(sql::Number(std::int64_t{till})), from_(ToDayFirst(opened)) {}

std::string ClosingPeriod::Condition() const {
  return " FROM DiaCaj WHERE DiaCaj_Caja = " + till_ + " AND DiaCaj_fecha >= '" + from_ +
         "' and DiaCaj_IdCierre=0 ";
}

PeriodTotals ClosingPeriod::Totals() const {
  const std::string period = Condition();
  const auto sums = context_.Database().Execute(
      "SELECT (SELECT ROUND(CAST(SUM(DiaCaj_Cobrado) AS MONEY),2) " + period +
      " AND DiaCaj_Tipo IN ('1','2')) AS Cobros,(SELECT ROUND(CAST(SUM(DiaCaj_Entrega) AS MONEY),2) " +
      period +
      " AND DiaCaj_Tipo =3) AS Pagos, "
      "(SELECT ROUND(CAST(Sum(DiaCaj_Entrega-DiaCaj_Devolucion) AS MONEY),2) " + period +
      " AND DiaCaj_Tipo IN ('1','2')) AS Metalico, "
      "(SELECT ROUND(CAST(Sum(DiaCaj_Tarjeta) AS MONEY),2) " + period + ") AS Tarjeta ");
  return {sums->Field("Metalico").NumberOr(0), sums->Field("Tarjeta").NumberOr(0),
          sums->Field("Pagos").NumberOr(0)};
}

std::unique_ptr<Recordset> ClosingPeriod::Collections() const {
  return context_.Database().Execute(
      "SELECT DiaCaj_Fecha, (SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) as Agente, "
      "(SELECT TOP 1 (CASE WHEN len(Cav_Serie)>0 THEN Cav_Serie + '/' ELSE '' END) + "
      "cast(Cav_Numero as varchar) FROM Tco LEFT JOIN Cav ON Tco_IdCav = Cav_ID "
      "WHERE Tco_IdDiaCaj = DiaCaj_Id ) AS Ticket, "
      "(SELECT sum(dbo.fncImporteConIva(Lav_id)) FROM Tco LEFT JOIN Cav ON Tco_IdCav = Cav_ID "
      "INNER JOIN Lav ON Lav_IdCav = Cav_Id WHERE Tco_IdDiaCaj = DiaCaj_Id ) AS Venta, "
      "ROUND(CAST(DiaCaj_Entrega-DiaCaj_Devolucion AS MONEY),2) AS Metalico, "
      "ROUND(CAST(DiaCaj_Tarjeta AS MONEY),2) AS Tarjeta, DiaCaj_Id as Id FROM DiaCaj "
      "WHERE DiaCaj_Caja = " + till_ + " AND DiaCaj_Fecha >= '" + from_ +
      "'  AND DiaCaj_Tipo IN ('1','2')  and DiaCaj_IdCierre=0  ORDER BY DiaCaj_Fecha");
}

std::unique_ptr<Recordset> ClosingPeriod::Entries() const {
  return context_.Database().Execute(
      "SELECT DiaCaj_Fecha, DiaCaj_Tipo, (SELECT TOP 1 " + std::string(kTicketReference) +
      " FROM Tco LEFT JOIN Cav ON Tco_IdCav = Cav_ID WHERE Tco_IdDiaCaj = DiaCaj_Id) AS Ticket, "
      "DiaCaj_Entrega, DiaCaj_Devolucion, DiaCaj_Tarjeta" + Condition() +
      "AND DiaCaj_Tipo IN ('1','2','3') ORDER BY DiaCaj_Fecha");
}

void ClosingPeriod::StampPayments(const std::string& closure_id) const {
  context_.Database().Execute(
      "Update DiaCaj set DiaCaj_IdCierre=" + closure_id + " WHERE DiaCaj_Caja = " + till_ +
      " AND DiaCaj_Tipo =3 AND DiaCaj_fecha >= '" + from_ + "' and DiaCaj_IdCierre=0 ");
}

std::string ClosingPeriod::Mark() const {
  const auto row = context_.Database().Execute(
      "SELECT COUNT(*) AS Apuntes, MAX(DiaCaj_Id) AS Ultimo" + Condition());
  return row->Field("Apuntes").ToPlainText() + "/" + row->Field("Ultimo").ToPlainText();
}

}  // namespace tpv
