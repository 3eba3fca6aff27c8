#include "panel/sums.h"

#include "panel/euros.h"

namespace tpv::panel {

void Sums::Add(const TicketGroup& group) {
  tickets += group.tickets;
  sold += group.sold;
  by_day[group.day] += group.sold;
  by_hour[static_cast<std::size_t>(group.hour)] += group.sold;
  by_seller[group.seller] += group.sold;
  by_till[group.till] += group.sold;
}

void Sums::Add(const LineGroup& group, const LineTax& tax_of) {
  const Micros with_tax = ToMicros(group.amount) + ToMicros(tax_of(group.amount, group.rate));
  const Micros of_lines = with_tax * group.lines;
  SoldArticle& article = by_article.Of(group.article);
  article.sold += of_lines;
  article.units += group.units;
  by_rate[group.rate] += of_lines;
  if (group.amount < 0) returned += of_lines;
}

Sums& Sums::operator+=(const Sums& more) {
  const auto add = [](auto& to, const auto& from) {
    for (const auto& [key, value] : from) to[key] += value;
  };
  add(by_day, more.by_day);
  add(by_seller, more.by_seller);
  add(by_till, more.by_till);
  add(by_rate, more.by_rate);
  for (std::size_t hour = 0; hour < by_hour.size(); ++hour) by_hour[hour] += more.by_hour[hour];
  by_article += more.by_article;
  tickets += more.tickets;
  sold += more.sold;
  returned += more.returned;
  cash += more.cash;
  card += more.card;
  discounts += more.discounts;
  return *this;
}

}  // namespace tpv::panel
