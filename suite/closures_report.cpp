#include "suite/closures_report.h"

#include <algorithm>
#include <array>

#include "base/mask.h"

namespace tpv::suite {

namespace {

// Euros of a closure's columns, in the order that the report shows them.
constexpr std::array kAmounts = {"DiaCaj_SaldoIni", "DiaCaj_CobMet", "DiaCaj_CobTar",
                                 "DiaCaj_Pagos",    "DiaCaj_Ret",    "SFinal"};
constexpr std::size_t kCash = 1;
constexpr std::size_t kCard = 2;
using Amounts = std::array<double, kAmounts.size()>;

struct TillTotals {
  int closures = 0;
  Amounts amounts{};
};

std::string Euros(double euros) { return FormatNumber(euros, "#,##0.00"); }

ReportTable ListTable(bool counted) {
  ReportTable list;
  list.columns = {{"FECHA", 2.4},         {"CAJA", 0.8, true},     {"VENDEDOR", 2.6},
                  {"INICIAL", 1.6, true}, {"METALICO", 1.6, true}, {"TARJETA", 1.6, true},
                  {"PAGOS", 1.4, true},   {"RETIRADO", 1.6, true}, {"IMPORTE FINAL", 1.8, true}};
  if (counted) list.columns.push_back({"ARQUEO", 1.4, true});
  return list;
}

ReportTable TillTable() {
  ReportTable tills;
  tills.caption = "Totales por caja";
  tills.columns = {{"CAJA", 1},           {"CIERRES", 1, true}, {"METALICO", 1.6, true},
                   {"TARJETA", 1.6, true}, {"PAGOS", 1.4, true}, {"RETIRADO", 1.6, true}};
  return tills;
}

ReportRow TillRow(const std::string& name, const TillTotals& totals, bool strong) {
  ReportRow row{{name, std::to_string(totals.closures)}, strong};
  for (std::size_t i = kCash; i + 1 < kAmounts.size(); ++i) {
    row.cells.push_back(Euros(totals.amounts[i]));
  }
  return row;
}

void Add(TillTotals& totals, const Amounts& amounts) {
  ++totals.closures;
  for (std::size_t i = 0; i < amounts.size(); ++i) totals.amounts[i] += amounts[i];
}

class ClosuresReader {
 public:
  ClosuresReader(Object& rows, const CountedDifferences& differences)
      : list(ListTable(!differences.empty())), rows_(rows), differences_(differences) {}

  void Read() {
    rows_.Invoke("MoveFirst");
    for (; !rows_.Get("EOF").ToBool(); rows_.Invoke("MoveNext")) ReadRow();
  }

  ReportTable list;

  ReportTable Tills() const {
    ReportTable table = TillTable();
    TillTotals all;
    for (const auto& [till, totals] : tills_) {
      table.rows.push_back(TillRow(std::to_string(till), totals, false));
      all.closures += totals.closures;
      for (std::size_t i = 0; i < all.amounts.size(); ++i) all.amounts[i] += totals.amounts[i];
    }
    table.rows.push_back(TillRow("Total", all, true));
    return table;
  }

  ChartData Days() const {
    ChartData chart;
    chart.caption = "Cobros por día";
    chart.series = {"Metálico", "Tarjeta"};
    chart.values.resize(2);
    for (const auto& [day, amounts] : days_) {
      chart.labels.push_back(FormatDate(day, "DD/MM/YY"));
      chart.values[0].push_back(amounts[kCash]);
      chart.values[1].push_back(amounts[kCard]);
    }
    return chart;
  }

 private:
  Variant Field(const char* name) { return rows_.Invoke("Fields", name); }

  void ReadRow() {
    Amounts amounts;
    std::transform(kAmounts.begin(), kAmounts.end(), amounts.begin(),
                   [this](const char* column) { return Field(column).NumberOr(0); });
    const DateTime when = Field("DiaCaj_Fecha").ToDate();
    const std::int32_t till = Field("DiaCaj_Caja").IntOr(0);
    ReportRow row{{FormatDate(when, "DD/MM/YYYY HH:MM"), std::to_string(till),
                   Field("Vendedor").TextOr("")}};
    for (const double euros : amounts) row.cells.push_back(Euros(euros));
    const auto difference = differences_.find(Field("DiaCaj_Id").IntOr(0));
    if (difference != differences_.end()) row.cells.push_back(Euros(difference->second));
    list.rows.push_back(std::move(row));
    Add(tills_[till], amounts);
    Amounts& day = days_[{when.year, when.month, when.day}];
    for (const std::size_t i : {kCash, kCard}) day[i] += amounts[i];
  }

  Object& rows_;
  const CountedDifferences& differences_;
  std::map<std::int32_t, TillTotals> tills_;
  std::map<DateTime, Amounts> days_;
};

}  // namespace

Report ClosuresReport(Object& rows, const CountedDifferences& differences, const std::string& shop) {
  ClosuresReader closures(rows, differences);
  closures.Read();
  Report report;
  report.title = "INFORME DE CIERRES DE CAJA";
  report.left = {shop};
  report.tables = {closures.list, closures.Tills()};
  report.charts = {closures.Days()};
  return report;
}

}  // namespace tpv::suite
