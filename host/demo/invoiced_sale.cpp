#include "host/demo/invoiced_sale.h"

#include <map>

#include "base/rounding.h"
#include "base/tax.h"
#include "host/demo/catalogue.h"

namespace tpv::demo {

namespace {

struct Sums {
  double base = 0, total = 0;

  void Add(const Sums& other) {
    base = RoundHalfAway(base + other.base, 2);
    total = RoundHalfAway(total + other.total, 2);
  }
  double tax() const { return RoundHalfAway(total - base, 2); }
};

// By rate, each from its lines' total.
std::map<double, Sums> ByRate(const std::vector<SoldLine>& lines) {
  std::map<double, Sums> rates;
  for (const SoldLine& line : lines) rates[RateOf(TaxClassOf(line.article))].Add({0, line.total});
  for (auto& [rate, sums] : rates) sums.base = BaseOf(sums.total, rate);
  return rates;
}

void FillHead(Connection& connection, const InvoicedSale& sale, const Sums& sums) {
  std::string values;
  for (const Sql& value : {Sql("FT"), Sql(sale.invoice), Sql(sale.moment), Sql(sums.base),
                           Sql(sums.tax()), Sql(sums.total)}) {
    values += value.text + ", ";
  }
  connection.Execute(
      "INSERT INTO Fav (Fav_Serie, Fav_Numero, Fav_Fecha, Fav_Base, Fav_Impuestos, Fav_Total, "
      "Fav_IdCli, Fav_CliCod, Fav_CliNom, Fav_CliDoc, Fav_IdFco) SELECT " +
      values +
      "CLI_ID, cast(CLI_COD as varchar), CLI_COMER, cli_doc, CLI_FCO FROM Cli WHERE CLI_ID = " +
      std::to_string(sale.customer));
}

}  // namespace

void FillInvoice(Connection& connection, const InvoicedSale& sale,
                 const std::vector<SoldLine>& lines) {
  const std::map<double, Sums> by_rate = ByRate(lines);
  Sums sums;
  for (const auto& [rate, of_rate] : by_rate) sums.Add(of_rate);
  for (const SoldLine& line : lines) {
    const double rate = RateOf(TaxClassOf(line.article));
    Insert(connection, "Fal",
           "Fal_IdFav, Fal_IdCav, Fal_Ticket, Fal_Fecha, Fal_CodArt, Fal_Des, Fal_Uni, Fal_Precio, "
           "Fal_Dto1, Fal_Importe, Fal_Iva, Fal_Total",
           {sale.invoice, sale.sale, sale.ticket, sale.moment, CodeOf(line.article),
            NameOf(line.article), line.units, line.price, 0.0, line.amount, rate, line.total});
  }
  FillHead(connection, sale, sums);
  for (const auto& [rate, of_rate] : by_rate) {
    Insert(connection, "Fai", "Fai_IdFav, Fai_Iva, Fai_Base, Fai_Cuota",
           {sale.invoice, rate, of_rate.base, of_rate.tax()});
  }
  Insert(connection, "Vto", "Vto_IdFav, Vto_Orden, Vto_Fecha, Vto_Importe, Vto_Modo, Vto_IdCli",
         {sale.invoice, 1, sale.moment, sums.total, 1, sale.customer});
}

}  // namespace tpv::demo
