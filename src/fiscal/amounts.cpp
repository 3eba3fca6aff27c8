#include "fiscal/amounts.h"

#include "base/tax.h"
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

std::vector<RateAmounts> ReadAmounts(Connection& connection, const std::string& tickets) {
  std::vector<RateAmounts> rates;
  const auto rows = connection.Execute(
      "SELECT Tiva_iva, Tiva_rec, SUM(dbo.FncImporteConIva(Lav_Id)) AS Total FROM Cav "
      "INNER JOIN Lav ON Lav_IdCav = Cav_Id INNER JOIN zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva" + tickets +
      " GROUP BY Tiva_iva, Tiva_rec ORDER BY Tiva_iva DESC, Tiva_rec");
  for (; !rows->Eof(); rows->MoveNext()) {
    rates.push_back(Divided(rows->Field(0).NumberOr(0), rows->Field(1).NumberOr(0), ToCents(rows->Field(2).NumberOr(0))));
  }
  return rates;
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
