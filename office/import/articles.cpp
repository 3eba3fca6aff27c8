// Articles from a file: what is there changes, what is not is added.

#include "office/import/article_check.h"
#include "office/import/stock_writer.h"
#include "office/import/stored_articles.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

class Articles : public ImportTarget {
 public:
  std::vector<std::string> Columns() const override {
    std::vector<std::string> columns;
    for (const Field& field : ArticleFields()) columns.emplace_back(field.name);
    columns.insert(columns.end(), {kPriceWithTax, kStock});
    return columns;
  }

  bool IsNumber(const std::string& column) const override {
    return column == "precio" || column == kPriceWithTax || column == kStock;
  }

  Refusals CheckHeading(const Heading& heading) const override {
    Refusals refusals;
    if (!heading.Has("codigo")) refusals.push_back({0, "codigo", "falta la columna"});
    if (heading.Has("precio") && heading.Has(kPriceWithTax)) {
      refusals.push_back({0, kPriceWithTax, "está también precio: quite una de las dos columnas"});
    }
    return refusals;
  }

  // Codes and bar codes are one set: a scanner's text is looked for in both.
  std::vector<std::string> Keys(const Heading& heading, const TableRow& row) const override {
    std::vector<std::string> keys;
    const std::string code = FoldKey(heading.Cell(row, "codigo"));
    const std::string bar_code = FoldKey(heading.Cell(row, "codigo_barras"));
    if (!code.empty()) keys.push_back(code);
    if (!bar_code.empty() && bar_code != code) keys.push_back(bar_code);
    return keys;
  }

  void Begin(Connection& connection) override { shop_ = ReadArticleShop(connection); }

  void Take(Connection& connection, ImportFile& file, const Batch& batch, bool write,
            Findings& findings) override {
    std::vector<std::string> keys;
    for (const TableRow& row : batch) {
      for (std::string& key : Keys(file.heading, row)) keys.push_back(std::move(key));
    }
    const StoredArticles stored(connection, keys);
    const Stocks stocks = ReadStocks(connection, stored.Ids());
    std::vector<WantedArticle> added;
    StockWriter writer(connection);
    for (const TableRow& row : batch) {
      const StoredRecord* article = nullptr;
      WantedArticle wanted = ReadArticle(shop_, file, row, stored, article, findings);
      for (const std::string& key : Keys(file.heading, row)) {
        const long before = file.repeated.Before(key, row.line);
        if (before == 0) continue;
        findings.Refuse(row.line, "",
                        "«" + key + "» ya está en la línea " + std::to_string(before));
        wanted.refused = true;
      }
      if (wanted.refused) continue;
      const auto stock =
          article == nullptr ? stocks.end() : stocks.find({article->id, shop_.warehouse});
      const bool known = stock != stocks.end();
      const bool moves = wanted.stock && !(known && stock->second == *wanted.stock);
      std::string changes = Changes(ArticleFields(), wanted, article);
      if (moves) AddWord(changes, kStock);
      if (article != nullptr && changes.empty()) {
        findings.Same();
        continue;
      }
      if (article == nullptr) changes = file.heading.CellsBeside(row, "codigo");
      findings.Took(row.line, file.heading.Cell(row, "codigo"), article == nullptr, changes);
      if (!write) continue;
      if (article == nullptr) {
        added.push_back(std::move(wanted));
        continue;
      }
      const std::string assignments = Assignments(ArticleFields(), "ART", wanted, article);
      if (!assignments.empty()) {
        connection.Execute("UPDATE ART SET " + assignments +
                           " WHERE art_id = " + std::to_string(article->id));
      }
      if (moves) writer.Set(article->id, shop_.warehouse, *wanted.stock, known);
    }
    Insert(connection, added, writer);
    writer.Flush();
  }

 private:
  void Insert(Connection& connection, const std::vector<WantedArticle>& added,
              StockWriter& writer) const {
    if (added.empty()) return;
    RowList rows("INSERT INTO ART (" + ColumnsOf(ArticleFields(), "ART") + ")");
    std::vector<std::string> codes;
    for (const WantedArticle& article : added) {
      rows.Add(ValuesOf(ArticleFields(), "ART", article));
      if (article.stock) codes.push_back(article.code());
    }
    connection.Execute(rows.text());
    const StoredArticles stored(connection, codes);  // for the numbers that they got
    for (const WantedArticle& article : added) {
      if (!article.stock) continue;
      writer.Set(stored.OfCode(FoldKey(article.code())).at(0)->id, shop_.warehouse, *article.stock,
                 false);
    }
  }

  ArticleShop shop_;
};

}  // namespace

std::unique_ptr<ImportTarget> ArticleImport() { return std::make_unique<Articles>(); }

}  // namespace tpv::office
