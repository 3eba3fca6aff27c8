// What the demonstration shop sells, to whom and by whom.
#pragma once

#include <string>

namespace tpv {

class Connection;

namespace demo {

inline constexpr int kArticles = 200;
inline constexpr int kCustomers = 40;  // besides the walk-in customer, who is the first
inline constexpr int kAgents = 6;

// Net price in euros and tax class of an article, by its id from 1; past the
// last one the assortment begins again with other references.
double NetPriceOf(int article);
int TaxClassOf(int article);
std::string NameOf(int article);
std::string CodeOf(int article);
// Percent with tax and the id of the tax row, by class from 1.
double RateOf(int tax_class);

void FillCatalogue(Connection& connection, int articles);
void FillPeople(Connection& connection);

}  // namespace demo
}  // namespace tpv
