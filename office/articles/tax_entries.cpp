#include "office/articles/tax_entries.h"

#include "base/number_text.h"

namespace tpv::office {

ui::Entries TaxEntries(const TaxKinds& taxes, const std::string& first) {
  std::vector<std::string> entries;
  if (!first.empty()) entries.push_back(first);
  for (const auto& [number, tax] : taxes) {
    const std::string surcharge = tax.surcharge != 0 ? " + " + ToSpanish(tax.surcharge) + " %" : "";
    entries.push_back(std::to_string(number) + " - " + ToSpanish(tax.rate) + " %" + surcharge);
  }
  return ui::Entries(std::move(entries));
}

}  // namespace tpv::office
