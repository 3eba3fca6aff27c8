#include "office/articles/price_change.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"
#include "context/database_object.h"
#include "data/decimals.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "data/tax_kinds.h"
#include "office/price.h"
#include "office/shop_parameters.h"
#include "platform/database.h"
#include "screen/search_list.h"

namespace tpv::office {

namespace {

constexpr double kLargestPrice = 99'999'999;

// The nearest multiple of `step` plus `offset`.
double Nearest(double price, double step, double offset) {
  const double steps = std::max(0.0, RoundHalfAway((price - offset) / step, 0));
  return RoundHalfAway(steps * step + offset, 2);
}

// Id, code, description, bar code, price without tax, tax kind.
ui::SearchRequest ReadArticles(Connection& connection, int tax_kind) {
  ui::SearchRequest request;
  request.shown_columns = {1, 2, 3};
  const std::string of_kind =
      tax_kind != 0 ? " AND art_tiva = " + sql::Number(std::int64_t{tax_kind}) : std::string();
  const auto rows = connection.Execute(
      "SELECT art_id, ART_Cod, art_des, ART_BARCODE, art_pve, art_tiva FROM ART WHERE art_pve > 0 AND " +
      NotRetired("ART", "art_id") + of_kind + " ORDER BY art_des, art_id");
  for (; !rows->Eof(); rows->MoveNext()) request.rows.push_back(rows->Fields());
  return request;
}

// Fills in the new price, or why there is none.
void TakeRule(PriceChange& change, const PriceRule& rule, const Tax* tax, int decimals) {
  if (tax == nullptr) {
    change.fault = "sin IVA vigente";
    return;
  }
  change.price = PriceWithTax(RoundHalfAway(change.net, decimals), *tax);
  change.new_price = PriceEndingIn(change.price * (1 + rule.percent / 100), rule.end);
  if (change.new_price > kLargestPrice) {
    change.fault = "demasiado grande";
    return;
  }
  const auto net = NetThatRings(change.new_price, *tax, decimals);
  if (net) {
    change.new_net = *net;
  } else {
    change.fault = "hacen falta " + std::to_string(kNewShopPriceDecimals) + " decimales";
  }
}

}  // namespace

double PriceEndingIn(double price, PriceEnd end) {
  switch (end) {
    case PriceEnd::FiveCents: return std::max(0.05, Nearest(price, 0.05, 0));
    case PriceEnd::TenCents: return std::max(0.10, Nearest(price, 0.10, 0));
    case PriceEnd::NinetyFive: return Nearest(price, 1, 0.95);
    case PriceEnd::NinetyNine: return Nearest(price, 1, 0.99);
    default: return std::max(0.01, RoundHalfAway(price, 2));
  }
}

std::vector<PriceChange> PlanPrices(DatabaseObject& store, const PriceRule& rule) {
  Connection& connection = store.Conexion();
  const Snapshot snapshot(connection);
  ui::SearchRequest articles = ReadArticles(connection, rule.tax_kind);
  ui::SearchList found(articles);
  found.Narrow(rule.search);
  const TaxKinds taxes = TaxKindsToday(connection);
  const int decimals = ReadShopParameters(connection).price_decimals;
  std::vector<PriceChange> plan;
  for (const std::size_t row : found.Visible()) {
    const ui::PackedRow article = articles.rows[row];
    PriceChange change;
    change.id = article[0].ToInt32();
    change.code = article[1].TextOr("");
    change.description = article[2].TextOr("");
    change.net = article[4].NumberOr(0);
    const auto tax = taxes.find(article[5].IntOr(0));
    TakeRule(change, rule, tax == taxes.end() ? nullptr : &tax->second, decimals);
    const bool same = change.fault.empty() && SameCents(change.price, change.new_price);
    if (!same) plan.push_back(std::move(change));
  }
  return plan;
}

bool StorePrices(DatabaseObject& store, const PriceRule& rule, const std::vector<PriceChange>& plan,
                 const std::set<std::int32_t>& chosen) {
  Connection& connection = store.Conexion();
  Transaction transaction(connection);
  if (PlanPrices(store, rule) != plan) return false;
  for (const PriceChange& change : plan) {
    if (!chosen.contains(change.id) || !change.fault.empty()) continue;
    connection.Execute("UPDATE ART SET art_pve = " + sql::Number(change.new_net) + " WHERE art_id = " +
                       sql::Number(std::int64_t{change.id}));
  }
  transaction.Commit();
  return true;
}

}  // namespace tpv::office
