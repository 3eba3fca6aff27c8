// What warehouses have of the articles, as somebody counted it.
#include <cmath>
#include <set>

#include "base/number_text.h"
#include "base/text.h"
#include "office/import/stock_writer.h"
#include "office/import/stored_articles.h"
#include "office/shop_parameters.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr const char* kCode = "codigo";
constexpr double kLargest = 99'999'999;

class StockImporter : public ImportTarget {
 public:
  std::vector<std::string> Columns() const override { return {kCode, kWarehouse, kStock}; }
  bool IsNumber(const std::string& column) const override { return column == kStock; }

  Refusals CheckHeading(const Heading& heading) const override {
    Refusals refusals;
    for (const char* column : {kCode, kStock}) {
      if (!heading.Has(column)) refusals.push_back({0, column, "falta la columna"});
    }
    return refusals;
  }

  std::vector<std::string> Keys(const Heading& heading, const TableRow& row) const override {
    const std::string code = FoldKey(heading.Cell(row, kCode));
    if (code.empty()) return {};
    return {code + '\n' + std::to_string(Warehouse(heading, row))};
  }

  void Begin(Connection& connection) override {
    warehouse_ = ReadShopParameters(connection).warehouse.value_or(0);
    warehouses_ = ReadWarehouses(connection);
  }

  void Take(Connection& connection, ImportFile& file, const Batch& batch, bool write,
            Findings& findings) override {
    std::vector<std::string> codes;
    for (const TableRow& row : batch) codes.push_back(FoldKey(file.heading.Cell(row, kCode)));
    const StoredArticles articles(connection, codes);
    const Stocks stocks = ReadStocks(connection, articles.Ids());
    StockWriter writer(connection);
    for (const TableRow& row : batch) {
      const auto wanted = Read(file, row, articles, findings);
      if (!wanted) continue;
      const auto stock = stocks.find({wanted->article, wanted->warehouse});
      const bool known = stock != stocks.end();
      if (known && stock->second == wanted->units) {
        findings.Same();
        continue;
      }
      findings.Took(row.line, file.heading.Cell(row, kCode), !known, kStock);
      if (write) writer.Set(wanted->article, wanted->warehouse, wanted->units, known);
    }
    writer.Flush();
  }

 private:
  struct Wanted {
    std::int32_t article = 0;
    std::int32_t warehouse = 0;
    double units = 0;
  };

  // The shop's own where the file says none.
  std::int32_t Warehouse(const Heading& heading, const TableRow& row) const {
    const std::string number = Trim(heading.Cell(row, kWarehouse));
    return number.empty() ? warehouse_ : Int32OrZero(number);
  }

  std::optional<Wanted> Read(ImportFile& file, const TableRow& row, const StoredArticles& articles,
                             Findings& findings) const {
    const auto refuse = [&](const char* field, const std::string& reason) {
      findings.Refuse(row.line, field, reason);
      return std::nullopt;
    };
    for (const std::string& key : Keys(file.heading, row)) {
      const long before = file.repeated.Before(key, row.line);
      if (before > 0) return refuse(kCode, "ya está en la línea " + std::to_string(before));
    }
    const auto& found = articles.OfCode(FoldKey(file.heading.Cell(row, kCode)));
    if (found.empty()) return refuse(kCode, "no hay ningún artículo con ese código");
    if (found.size() > 1) return refuse(kCode, "la tienda tiene varios artículos con este código");
    const std::int32_t warehouse = Warehouse(file.heading, row);
    if (!warehouses_.contains(warehouse))
      return refuse(kWarehouse, "no hay ningún almacén con ese número");
    std::string reason;
    const auto units = file.mark.Read(file.heading.Cell(row, kStock), reason);
    if (!units) return refuse(kStock, reason);
    if (std::fabs(*units) > kLargest)
      return refuse(kStock, "las existencias son demasiado grandes");
    return Wanted{found[0]->id, warehouse, *units};
  }

  std::int32_t warehouse_ = 0;
  std::set<int> warehouses_;
};

}  // namespace

std::unique_ptr<ImportTarget> StockImport() { return std::make_unique<StockImporter>(); }

}  // namespace tpv::office
