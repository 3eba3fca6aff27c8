// Finding the article of a line: its description, the customer's price for it
// and the tax that applies on the day of the sale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/tax_kinds.h"

namespace tpv {

struct Context;

// What is known of the article wanted; the first that is not empty counts.
struct ArticleKey {
  std::string bar_code;
  std::int32_t id = 0;
  std::string code;  // article code or bar code

  bool Empty() const { return bar_code.empty() && id == 0 && code.empty(); }
};

struct Article {
  std::int32_t id = 0;
  std::string code;
  std::string description;
  double net_price = 0;   // euros, the customer's fixed price when there is one
  std::string discount;   // percent, as a field shows it
  std::int32_t tax_class = 0;
};

// Nullopt when there is no such article. Returns leave the retail price out of
// the select.
std::optional<Article> FindArticle(Context& context, const ArticleKey& key,
                                   std::int32_t customer_id, bool with_retail_price = true);

// The tax valid on a date field's text; today's when it holds no date. Nullopt
// when the article's class has none.
std::optional<Tax> FindTax(Context& context, std::int32_t tax_class, const std::string& date);
// The newest tax of the class, whatever day it is valid from.
std::optional<Tax> FindNewestTax(Context& context, std::int32_t tax_class);

// Shows the article search; the id chosen, 0 for none.
std::int32_t SearchArticle(Context& context);

}  // namespace tpv
