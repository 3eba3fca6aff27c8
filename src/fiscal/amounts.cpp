#include "fiscal/amounts.h"

#include <map>

#include "base/tax.h"
#include "data/sql_text.h"
#include "fiscal/record_columns.h"
#include "platform/database.h"

namespace tpv::fiscal {

RateAmounts Divided(double rate, double surcharge, Cents total) {
  RateAmounts amounts{rate, surcharge};
  const double base = BaseOf(ToEuros(total), rate + surcharge);
  amounts.base = ToCents(base);
  amounts.surcharge_tax = ToCents(base / 100 * surcharge);
  amounts.tax = total - amounts.base - amounts.surcharge_tax;
  return amounts;
}

namespace {

// Of rows of a rate, a surcharge and a total with tax: what each rate comes to, the highest
// first.
std::vector<RateAmounts> AddUp(const std::unique_ptr<Recordset>& rows) {
  std::map<std::pair<double, double>, Cents> totals;
  for (; !rows->Eof(); rows->MoveNext()) {
    totals[{-rows->Field(0).NumberOr(0), rows->Field(1).NumberOr(0)}] += ToCents(rows->Field(2).NumberOr(0));
  }
  std::vector<RateAmounts> rates;
  for (const auto& [rate, total] : totals) rates.push_back(Divided(-rate.first, rate.second, total));
  return rates;
}

const std::string kLines = "FROM Lav INNER JOIN zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva ";

}  // namespace

std::vector<RateAmounts> TicketAmounts(Connection& connection, std::int32_t ticket) {
  return AddUp(connection.Execute("SELECT Tiva_iva, Tiva_rec, dbo.FncImporteConIva(Lav_Id) AS Importe " + kLines +
                                  "WHERE Lav_IdCav = " + sql::Number(std::int64_t{ticket})));
}

std::vector<RateAmounts> InvoiceAmounts(Connection& connection, std::int32_t invoice) {
  return AddUp(connection.Execute("SELECT Tiva_iva, Tiva_rec, SUM(dbo.FncImporteConIva(Lav_Id)) AS Importe " + kLines +
                                  "INNER JOIN Cav ON Cav_Id = Lav_IdCav WHERE Cav_IdFactura = " +
                                  sql::Number(std::int64_t{invoice}) + " GROUP BY Tiva_iva, Tiva_rec"));
}

void SetAmounts(Record& record, std::vector<RateAmounts> rates) {
  record.tax = record.total = 0;
  for (const RateAmounts& of_rate : rates) {
    record.tax += of_rate.tax + of_rate.surcharge_tax;
    record.total += of_rate.Total();
  }
  record.rates = std::move(rates);
}

}  // namespace tpv::fiscal
